#include "core/update/NetworkLoader.h"

#include "core/update/SecureURL.h"

#include <QNetworkAccessManager>
#include <QNetworkCookie>
#include <QNetworkCookieJar>
#include <QNetworkReply>
#include <QTimer>

namespace {

using Done = std::function<void(const LoadOutcome &)>;

// Neither sends nor keeps cookies, so a redirect cannot carry one along.
class RefusingCookieJar : public QNetworkCookieJar
{
public:
    using QNetworkCookieJar::QNetworkCookieJar;
    QList<QNetworkCookie> cookiesForUrl(const QUrl &) const override { return {}; }
    bool setCookiesFromUrl(const QList<QNetworkCookie> &, const QUrl &) override { return false; }
};

// One request with its own manager; it lives inside the caller's context
// object, so deleting that context tears everything down without an answer.
class RequestJob : public QObject
{
public:
    RequestJob(QNetworkRequest request, const NetworkLoader::Options &options, QObject *context, Done done);

private:
    void redirected(const QUrl &target);
    bool isRedirect(int status) const;
    void headArrived();
    void bodyArrived();
    void finished();
    void settle(const LoadOutcome &outcome);
    void fail(UpdateCheckFailure::Kind kind) { settle(UpdateCheckFailure::of(kind)); }

    QNetworkAccessManager *m_manager;
    QNetworkReply *m_reply = nullptr;
    Done m_done;
    QByteArray m_body;
    bool m_headSeen = false;
    bool m_settled = false;
};

RequestJob::RequestJob(QNetworkRequest request, const NetworkLoader::Options &options, QObject *context, Done done)
    : QObject(context)
    , m_manager(new QNetworkAccessManager(this))
    , m_done(std::move(done))
{
    m_manager->setCookieJar(new RefusingCookieJar);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::UserVerifiedRedirectPolicy);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setTransferTimeout(static_cast<int>(options.transferTimeout.count()));
    if (options.tls)
        request.setSslConfiguration(*options.tls);

    m_reply = m_manager->get(request);
    // Qt stops reading the socket once this much waits unread.
    m_reply->setReadBufferSize(NetworkLoader::largestBody + 1);
    connect(m_reply, &QNetworkReply::redirected, this, &RequestJob::redirected);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &RequestJob::headArrived);
    connect(m_reply, &QNetworkReply::readyRead, this, &RequestJob::bodyArrived);
    connect(m_reply, &QNetworkReply::finished, this, &RequestJob::finished);
    QTimer::singleShot(options.totalTimeout, this, [this] { fail(UpdateCheckFailure::Kind::Network); });
}

bool RequestJob::isRedirect(int status) const
{
    // Qt reports a redirect's head before asking whether to follow it; what counts is the answer after it.
    static constexpr int followed[] = {301, 302, 303, 305, 307, 308};
    return std::find(std::begin(followed), std::end(followed), status) != std::end(followed)
           && m_reply->hasRawHeader("Location");
}

void RequestJob::redirected(const QUrl &target)
{
    if (secureURL(m_reply->url().resolved(target).toString(QUrl::FullyEncoded)))
        emit m_reply->redirectAllowed();
    else
        fail(UpdateCheckFailure::Kind::InsecureRedirect);
}

void RequestJob::headArrived()
{
    if (m_settled || m_headSeen)
        return;
    const QVariant status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!status.isValid() || isRedirect(status.toInt()))
        return;
    m_headSeen = true;
    // An error page is never read.
    if (status.toInt() != 200) {
        settle(LoadedResponse{{}, m_reply->url(), status.toInt()});
        return;
    }
    const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
    if (length.isValid() && length.toLongLong() > NetworkLoader::largestBody)
        fail(UpdateCheckFailure::Kind::ResponseTooLarge);
}

void RequestJob::bodyArrived()
{
    headArrived();
    if (m_settled)
        return;
    if (m_body.size() + m_reply->bytesAvailable() > NetworkLoader::largestBody) {
        fail(UpdateCheckFailure::Kind::ResponseTooLarge);
        return;
    }
    m_body += m_reply->readAll();
}

void RequestJob::finished()
{
    bodyArrived();
    if (m_settled)
        return;
    if (m_reply->error() != QNetworkReply::NoError) {
        fail(UpdateCheckFailure::Kind::Network);
        return;
    }
    const QVariant status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    settle(LoadedResponse{m_body, m_reply->url(), status.isValid() ? std::optional(status.toInt()) : std::nullopt});
}

void RequestJob::settle(const LoadOutcome &outcome)
{
    if (m_settled)
        return;
    m_settled = true;
    m_reply->disconnect(this);
    m_reply->abort();
    deleteLater();
    m_done(outcome);
}

} // namespace

namespace NetworkLoader {

UpdateLoader make(Options options)
{
    return [options](const QNetworkRequest &request, QObject *context, Done done) {
        new RequestJob(request, options, context, std::move(done));
    };
}

} // namespace NetworkLoader
