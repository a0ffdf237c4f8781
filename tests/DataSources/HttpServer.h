#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace lmx::tests {

/// What came to a server.
struct THttpRequest {
    QByteArray Method;
    QByteArray Path;
    bool HasRange = false;
    qint64 First = 0;
    qint64 Last = 0; ///< inclusive
};

/// A server of files on the loopback, on threads of its own, which answers as a test tells it to.
class THttpServer {
public:
    /// Writes the bytes of an answer; called on a thread of the server. An empty text closes the connection.
    using TAnswer = std::function<QByteArray(const THttpRequest& request)>;

    explicit THttpServer(TAnswer answer);
    ~THttpServer(); ///< cuts what is under way

    /// "http://127.0.0.1:4711/path"
    QString UrlOf(const QString& path, const QString& host = QStringLiteral("127.0.0.1")) const;
    int GetPort() const { return FPort; }
    int GetRequests() const { return FRequests; }
    bool IsEnding() const { return FIsEnding; }

    /// A whole answer of a good server that has ranges.
    static QByteArray AnswerWith(const THttpRequest& request, const QByteArray& file);
    static QByteArray Status(const char* status, const QByteArray& fields = {}, const QByteArray& body = {});

private:
    void Accept();
    void Serve(int socket);

    const TAnswer FAnswer;
    int FListener = -1;
    int FPort = 0;
    std::atomic<int> FRequests = 0;
    std::atomic<bool> FIsEnding = false;
    std::vector<std::jthread> FConnections;
    std::jthread FAccepting;
};

} // namespace lmx::tests
