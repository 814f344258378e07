#include "App/RefusingNetworkFactory.h"

#include "standins/LoopbackService.h"
#include "support/Awaiting.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <memory>

using namespace Talvo;

namespace {

/// What the network of a factory makes of an address.
QNetworkReply::NetworkError errorFor(const QUrl &url)
{
    const std::unique_ptr<QNetworkAccessManager> network(RefusingNetworkFactory().create(nullptr));
    const std::unique_ptr<QNetworkReply> reply(network->get(QNetworkRequest(url)));
    EXPECT_TRUE(awaitedCondition([&reply] { return reply->isFinished(); }));
    EXPECT_EQ(reply->readAll(), QByteArray());
    return reply->error();
}

} // namespace

TEST(RefusingNetworkFactory, fetchesNothingFromAnywhere)
{
    const LoopbackService service({ScriptedAnswer::http(200, "x")});
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write("x");
    file.close();

    for (const QUrl &url : {service.url(), QUrl::fromLocalFile(file.fileName()),
                            QUrl(QStringLiteral("data:text/plain,x")),
                            QUrl(QStringLiteral("qrc:/qt/qml/Talvo/Views/qmldir"))}) {
        EXPECT_NE(errorFor(url), QNetworkReply::NoError) << qPrintable(url.toString());
    }
    EXPECT_EQ(service.connectionCount(), 0);
}
