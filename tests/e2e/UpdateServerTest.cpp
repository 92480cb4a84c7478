#include "core/update/NetworkLoader.h"
#include "core/update/UpdateChecker.h"
#include "support/ParamName.h"
#include "support/Process.h"
#include "support/UpdateChecks.h"

#include <QFile>
#include <QMap>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>

namespace {

using namespace std::chrono_literals;
using Failure = UpdateCheckFailure::Kind;

QByteArray manifestOfSize(qsizetype size)
{
    QByteArray json = R"({"bundleIdentifier":"app.tolvar","version":"1.3","build":9,)"
                      R"("minimumSystemVersion":"26.0","releaseURL":"https://tolvar.app/r"})";
    return json + QByteArray(size - json.size(), ' ');
}

// What the server does for one path. "{port}" in the head becomes the server's port.
struct Script
{
    QByteArray head;
    QByteArray body;
    // Close after the body (the length is then the stream's); otherwise stay open and silent.
    bool close = true;
    // Send the body one byte every 100 ms.
    bool trickle = false;
};

const QMap<QByteArray, Script> scripts{
    {"/manifest",
     {"HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(NetworkLoader::largestBody) + "\r\n",
      manifestOfSize(NetworkLoader::largestBody)}},
    {"/moved", {"HTTP/1.1 308 Permanent Redirect\r\nLocation: /manifest\r\nContent-Length: 0\r\n", {}}},
    {"/too-large", {"HTTP/1.1 200 OK\r\n", manifestOfSize(NetworkLoader::largestBody + 1)}},
    // The heads alone decide these: their bodies never come.
    {"/missing", {"HTTP/1.1 404 Not Found\r\nContent-Length: 100000\r\n", {}, false}},
    {"/to-http", {"HTTP/1.1 302 Found\r\nLocation: http://127.0.0.1:{port}/manifest\r\nContent-Length: 0\r\n", {}}},
    {"/trickle", {"HTTP/1.1 200 OK\r\n", manifestOfSize(1000), true, true}},
    {"/stall", {"HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n", "{\"bundle", false}},
};

// A local HTTPS server with a certificate made for this run.
class ScriptedServer
{
public:
    bool start(const QString &directory)
    {
        const QString key = directory + "/key.pem", cert = directory + "/cert.pem";
        const ProcessResult made =
            runProcess("openssl", {"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
                                   "-nodes", "-keyout", key, "-out", cert, "-days", "1", "-subj", "/CN=127.0.0.1",
                                   "-addext", "subjectAltName=IP:127.0.0.1"});
        QFile keyFile(key), certFile(cert);
        if (made.exitCode != 0 || !keyFile.open(QIODevice::ReadOnly) || !certFile.open(QIODevice::ReadOnly))
            return false;
        certificate = QSslCertificate(certFile.readAll());
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setLocalCertificate(certificate);
        tls.setPrivateKey(QSslKey(keyFile.readAll(), QSsl::Ec));
        m_server.setSslConfiguration(tls);
        QObject::connect(&m_server, &QSslServer::pendingConnectionAvailable, &m_server, [this] {
            while (QTcpSocket *socket = m_server.nextPendingConnection())
                QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { serve(socket); });
        });
        return m_server.listen(QHostAddress::LocalHost);
    }

    QString address(const char *path) const
    {
        return QString("https://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(QLatin1String(path));
    }

    QSslCertificate certificate;

private:
    void serve(QTcpSocket *socket)
    {
        QByteArray &request = m_requests[socket];
        request += socket->readAll();
        if (!request.contains("\r\n\r\n"))
            return;
        const QByteArray path = request.split(' ').value(1);
        const Script script = scripts.value(path, {"HTTP/1.1 500 Unknown\r\n", {}});
        QByteArray head = script.head;
        head.replace("{port}", QByteArray::number(m_server.serverPort()));
        socket->write(head + (script.close ? "Connection: close\r\n\r\n" : "\r\n"));
        if (!script.trickle) {
            socket->write(script.body);
            if (script.close)
                socket->disconnectFromHost();
            return;
        }
        auto *timer = new QTimer(socket);
        QObject::connect(timer, &QTimer::timeout, socket, [socket, body = script.body, sent = 0]() mutable {
            if (sent < body.size())
                socket->write(body.mid(sent++, 1));
        });
        timer->start(100);
    }

    QSslServer m_server;
    QMap<QTcpSocket *, QByteArray> m_requests;
};

struct ServerCase
{
    const char *name;
    const char *path;
    UpdateCheckResult expected;
    bool trusted = true;
};

class UpdateServerTest : public testing::TestWithParam<ServerCase>
{
protected:
    static void SetUpTestSuite()
    {
        s_directory = std::make_unique<QTemporaryDir>();
        s_server = std::make_unique<ScriptedServer>();
        ASSERT_TRUE(s_server->start(s_directory->path()));
    }
    static void TearDownTestSuite()
    {
        s_server.reset();
        s_directory.reset();
    }

    static inline std::unique_ptr<QTemporaryDir> s_directory;
    static inline std::unique_ptr<ScriptedServer> s_server;
};

TEST_P(UpdateServerTest, AnswersAsTheManifestAndTheLimitsSay)
{
    ASSERT_TRUE(s_server);
    // Only this request trusts the test's certificate; the limits are shortened.
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    if (GetParam().trusted)
        tls.setCaCertificates({s_server->certificate});
    const AppBuildInfo local{"1.2", 7, "26.0", s_server->address(GetParam().path)};
    const UpdateChecker checker = UpdateChecker::make(local, "26.0.1", NetworkLoader::make({1000ms, 2500ms, tls}));

    EXPECT_EQ(runToEnd(checker), GetParam().expected);
}

UpdateCheckResult available(qsizetype size)
{
    return UpdateCheckResult::available(*ReleaseManifest::decode(manifestOfSize(size)), false);
}

INSTANTIATE_TEST_SUITE_P(
    Update, UpdateServerTest,
    testing::Values(ServerCase{"ManifestAsLargeAsAllowed", "/manifest", available(NetworkLoader::largestBody)},
                    ServerCase{"MovedPermanently", "/moved", available(NetworkLoader::largestBody)},
                    ServerCase{"BodyTooLarge", "/too-large", UpdateCheckResult::failed(Failure::ResponseTooLarge)},
                    ServerCase{"NotFound", "/missing", UpdateCheckResult::failed(UpdateCheckFailure::http(404))},
                    ServerCase{"RedirectToHttp", "/to-http", UpdateCheckResult::failed(Failure::InsecureRedirect)},
                    ServerCase{"UntrustedCertificate", "/manifest", UpdateCheckResult::failed(Failure::Network), false},
                    ServerCase{"Stalls", "/stall", UpdateCheckResult::failed(Failure::Network)},
                    // Never idle, yet never done: only the overall limit ends it.
                    ServerCase{"Trickles", "/trickle", UpdateCheckResult::failed(Failure::Network)}),
    ParamName());

} // namespace
