#pragma once

#include <QQmlNetworkAccessManagerFactory>

namespace Talvo {

/// Gives QML a network that refuses every request, so that nothing a reply holds can make a view
/// fetch anything. Thread-safe, as the engine demands.
class RefusingNetworkFactory : public QQmlNetworkAccessManagerFactory
{
public:
    [[nodiscard]] QNetworkAccessManager *create(QObject *parent) override;
};

} // namespace Talvo
