#include "App/RefusingNetworkFactory.h"

#include <QNetworkAccessManager>
#include <QNetworkRequest>

namespace Talvo {

namespace {

class RefusingNetwork : public QNetworkAccessManager
{
public:
    using QNetworkAccessManager::QNetworkAccessManager;

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &,
                                 QIODevice *body) override
    {
        // An address without a scheme fails before anything is opened.
        return QNetworkAccessManager::createRequest(operation, QNetworkRequest(QUrl()), body);
    }
};

} // namespace

QNetworkAccessManager *RefusingNetworkFactory::create(QObject *parent)
{
    return new RefusingNetwork(parent);
}

} // namespace Talvo
