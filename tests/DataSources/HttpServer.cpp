#include <tests/DataSources/HttpServer.h>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace lmx::tests {

namespace {

constexpr int Turn = 20; // milliseconds between two looks whether the server ends

THttpRequest Parse(const QByteArray& head) {
    THttpRequest request;
    const QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> words = lines[0].trimmed().split(' ');
    request.Method = words.value(0);
    request.Path = words.value(1);
    for (const QByteArray& line : lines) {
        const QByteArray field = line.trimmed();
        if (!field.toLower().startsWith("range: bytes="))
            continue;
        const QList<QByteArray> ends = field.mid(13).split('-');
        request.HasRange = true;
        request.First = ends.value(0).toLongLong();
        request.Last = ends.value(1).toLongLong();
    }
    return request;
}

} // namespace

THttpServer::THttpServer(TAnswer answer) : FAnswer(std::move(answer)), FListener(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    auto* const name = reinterpret_cast<sockaddr*>(&address);
    if (bind(FListener, name, size) != 0 || listen(FListener, 64) != 0 || getsockname(FListener, name, &size) != 0)
        throw std::runtime_error("no port for the server");
    FPort = ntohs(address.sin_port);
    FAccepting = std::jthread([this] { Accept(); });
}

THttpServer::~THttpServer() {
    FIsEnding = true;
    FAccepting.join();
    FConnections.clear();
    close(FListener);
}

QString THttpServer::UrlOf(const QString& path, const QString& host) const {
    return QStringLiteral("http://%1:%2/%3").arg(host).arg(FPort).arg(path);
}

QByteArray THttpServer::Status(const char* status, const QByteArray& fields, const QByteArray& body) {
    return QByteArray("HTTP/1.1 ") + status + "\r\n" + fields + "Content-Length: " + QByteArray::number(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

QByteArray THttpServer::AnswerWith(const THttpRequest& request, const QByteArray& file) {
    const QByteArray type = "Accept-Ranges: bytes\r\nContent-Type: image/tiff\r\nConnection: close\r\n";
    if (request.Method == "HEAD" || !request.HasRange)
        return "HTTP/1.1 200 OK\r\n" + type + "Content-Length: " + QByteArray::number(file.size()) + "\r\n\r\n" +
               (request.Method == "HEAD" ? QByteArray() : file);
    const qint64 last = std::min<qint64>(request.Last, file.size() - 1);
    const QByteArray part = file.mid(request.First, last - request.First + 1);
    return "HTTP/1.1 206 Partial Content\r\n" + type + "Content-Range: bytes " + QByteArray::number(request.First) +
           '-' + QByteArray::number(last) + '/' + QByteArray::number(file.size()) +
           "\r\nContent-Length: " + QByteArray::number(part.size()) + "\r\n\r\n" + part;
}

void THttpServer::Accept() {
    while (!FIsEnding) {
        pollfd waited = {FListener, POLLIN, 0};
        if (poll(&waited, 1, Turn) <= 0)
            continue;
        const int client = accept(FListener, nullptr, nullptr);
        if (client < 0)
            continue;
        FConnections.emplace_back([this, client] {
            Serve(client);
            close(client);
        });
    }
}

void THttpServer::Serve(int socket) {
    QByteArray head;
    while (!head.contains("\r\n\r\n")) {
        pollfd waited = {socket, POLLIN, 0};
        if (FIsEnding)
            return;
        if (poll(&waited, 1, Turn) <= 0)
            continue;
        char bytes[4096];
        const auto count = recv(socket, bytes, sizeof(bytes), 0);
        if (count <= 0)
            return;
        head.append(bytes, count);
    }
    ++FRequests;
    const QByteArray answer = FAnswer(Parse(head));
    for (qsizetype sent = 0; sent < answer.size() && !FIsEnding;) {
        const auto count =
            send(socket, answer.constData() + sent, static_cast<std::size_t>(answer.size() - sent), MSG_NOSIGNAL);
        if (count <= 0)
            return;
        sent += count;
    }
}

} // namespace lmx::tests
