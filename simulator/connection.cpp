#include "connection.h"

#include "redfish_error.h"
#include "wire_format.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/ssl.hpp>

#include <algorithm>
#include <array>
#include <optional>
#include <type_traits>
#include <utility>

namespace simulator
{
namespace
{
namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using Error = boost::system::error_code;
using PlainStream = beast::tcp_stream;
using TlsStream = beast::ssl_stream<beast::tcp_stream>;

constexpr std::uint32_t kMostHeaderBytes = 16384;
constexpr std::uint64_t kMostBodyBytes = 65536;
constexpr std::chrono::seconds kIdleTime{120};
constexpr std::chrono::seconds kWriteTime{120};
constexpr std::chrono::seconds kHandshakeTime{60};
constexpr std::chrono::seconds kGoodbyeTime{2};
constexpr std::chrono::seconds kHangTime{3600};
constexpr const char* kControlPath = "/simulator/statistics";

std::string header(const http::request<http::string_body>& message, const char* name)
{
    const auto found = message.find(name);
    return found == message.end() ? std::string() : std::string(found->value());
}

template <class Stream>
class Connection : public std::enable_shared_from_this<Connection<Stream>>
{
  public:
    Connection(asio::ip::tcp::socket socket, std::shared_ptr<Service> service)
        : service_(std::move(service)), stream_(makeStream(std::move(socket), *service_)),
          timer_(stream_.get_executor())
    {
    }

    ~Connection()
    {
        if (inRequest_)
        {
            statistics().requestEnds();
        }
    }

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void start()
    {
        statistics().update([](ControllerStatistics& values) { ++values.connections; });
        if constexpr (kTls)
        {
            lowest().expires_after(kHandshakeTime);
            stream_.async_handshake(asio::ssl::stream_base::server,
                                    [self = this->shared_from_this()](const Error& error) { self->greeted(error); });
        }
        else
        {
            readRequest();
        }
    }

  private:
    static constexpr bool kTls = std::is_same_v<Stream, TlsStream>;

    static Stream makeStream(asio::ip::tcp::socket socket, Service& service)
    {
        if constexpr (kTls)
        {
            return Stream(beast::tcp_stream(std::move(socket)), *service.tls);
        }
        else
        {
            static_cast<void>(service);
            return Stream(std::move(socket));
        }
    }

    Statistics& statistics() { return service_->controller->statistics(); }
    beast::tcp_stream& lowest() { return beast::get_lowest_layer(stream_); }

    void greeted(const Error& error)
    {
        if (error)
        {
            statistics().update([](ControllerStatistics& values) { ++values.failedHandshakes; });
            return;
        }
        readRequest();
    }

    void readRequest()
    {
        parser_.emplace();
        parser_->header_limit(kMostHeaderBytes);
        parser_->body_limit(kMostBodyBytes);
        lowest().expires_after(kIdleTime);
        http::async_read(stream_, buffer_, *parser_,
                         [self = this->shared_from_this()](const Error& error, std::size_t) { self->received(error); });
    }

    void received(const Error& error)
    {
        if (error == http::error::header_limit)
        {
            refuse(431);
        }
        else if (error == http::error::body_limit)
        {
            refuse(413);
        }
        else if (error == http::error::end_of_stream)
        {
            sayGoodbye();
        }
        else if (error.category() == http::make_error_code(http::error::bad_method).category() &&
                 error != http::error::partial_message)
        {
            refuse(400);
        }
        else if (!error)
        {
            answer();
        }
    }

    // The rest of such a request is unknown, so that the connection cannot go on.
    void refuse(unsigned status)
    {
        traits_ = RequestTraits{};
        traits_.keepAlive = false;
        send(redfishError(status));
    }

    void answer()
    {
        const http::request<http::string_body> message = parser_->release();
        traits_.head = message.method() == http::verb::head;
        traits_.http10 = message.version() < 11;
        traits_.keepAlive = message.keep_alive();
        traits_.gzipAccepted = header(message, "Accept-Encoding").find("gzip") != std::string::npos;

        Request request;
        request.method = std::string(message.method_string());
        request.target = std::string(message.target());
        request.host = header(message, "Host");
        request.authorization = header(message, "Authorization");
        request.token = header(message, "X-Auth-Token");
        request.cimOperation = header(message, "CIMOperation");
        request.cimMethod = header(message, "CIMMethod");
        request.cimObject = header(message, "CIMObject");
        request.body = message.body();
        Error unknown;
        request.client = lowest().socket().remote_endpoint(unknown).address().to_string();
        if (service_->control && request.target == kControlPath)
        {
            Reply reply;
            reply.contentType = "application/json";
            reply.body = service_->control();
            send(std::move(reply));
            return;
        }
        statistics().requestBegins(request.method, request.target.substr(0, request.target.find('?')));
        inRequest_ = true;
        Reply reply = service_->controller->answer(request);
        const std::chrono::milliseconds delay = reply.delay;
        if (delay.count() == 0)
        {
            send(std::move(reply));
            return;
        }
        lowest().expires_never();
        timer_.expires_after(delay);
        timer_.async_wait(
            [self = this->shared_from_this(), held = std::move(reply)](const Error& error) mutable
            {
                if (!error)
                {
                    self->send(std::move(held));
                }
            });
    }

    void send(Reply reply)
    {
        switch (reply.delivery)
        {
        case Delivery::Hang:
            waitForPeer();
            return;
        case Delivery::CutBeforeHeaders:
            reset();
            return;
        case Delivery::EmptyReply:
            sayGoodbye();
            return;
        default:
            break;
        }
        if (inRequest_)
        {
            statistics().update([&reply](ControllerStatistics& values) { ++values.statuses[reply.status]; });
        }
        wire_ = encodeReply(std::move(reply), service_->controller->config().behaviour, traits_);
        sent_ = 0;
        writePiece();
    }

    void writePiece()
    {
        if (wire_.cutAt)
        {
            wire_.bytes.resize(std::min<std::uint64_t>(wire_.bytes.size(), *wire_.cutAt - sent_));
        }
        sent_ += wire_.bytes.size();
        lowest().expires_after(kWriteTime);
        asio::async_write(stream_, asio::buffer(wire_.bytes),
                          [self = this->shared_from_this()](const Error& error, std::size_t) { self->written(error); });
    }

    void written(const Error& error)
    {
        if (error)
        {
            return;
        }
        if (wire_.cutAt && sent_ >= *wire_.cutAt)
        {
            cut();
            return;
        }
        wire_.bytes = wire_.more ? wire_.more() : std::string();
        if (!wire_.bytes.empty())
        {
            writePiece();
            return;
        }
        if (inRequest_)
        {
            inRequest_ = false;
            statistics().requestEnds();
        }
        if (wire_.after == AfterReply::Close)
        {
            sayGoodbye();
            return;
        }
        readRequest();
    }

    void waitForPeer()
    {
        lowest().expires_after(kHangTime);
        stream_.async_read_some(asio::buffer(drain_),
                                [self = this->shared_from_this()](const Error& error, std::size_t)
                                {
                                    if (!error)
                                    {
                                        self->waitForPeer();
                                    }
                                });
    }

    // The bytes so far reach the client, then the connection is gone without a word of TLS.
    void cut()
    {
        Error ignored;
        lowest().socket().shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
        lowest().close();
    }

    void reset()
    {
        Error ignored;
        lowest().socket().set_option(asio::socket_base::linger(true, 0), ignored);
        lowest().close();
    }

    void sayGoodbye()
    {
        lowest().expires_after(kGoodbyeTime);
        if constexpr (kTls)
        {
            stream_.async_shutdown([self = this->shared_from_this()](const Error&) { self->endPlain(); });
        }
        else
        {
            endPlain();
        }
    }

    // What the client still sends is read for a moment: closing over unread bytes would reset the connection and take
    // the answer with it.
    void endPlain()
    {
        Error error;
        lowest().socket().shutdown(asio::ip::tcp::socket::shutdown_send, error);
        if (!error)
        {
            lowest().expires_after(kGoodbyeTime);
            drainRest();
        }
    }

    void drainRest()
    {
        lowest().async_read_some(asio::buffer(drain_),
                                 [self = this->shared_from_this()](const Error& error, std::size_t)
                                 {
                                     if (!error)
                                     {
                                         self->drainRest();
                                     }
                                 });
    }

    std::shared_ptr<Service> service_;
    Stream stream_;
    asio::steady_timer timer_;
    beast::flat_buffer buffer_;
    std::optional<http::request_parser<http::string_body>> parser_;
    RequestTraits traits_;
    WireReply wire_;
    std::uint64_t sent_ = 0;
    std::array<char, 4096> drain_{};
    bool inRequest_ = false;
};
} // namespace

void serveConnection(asio::ip::tcp::socket socket, std::shared_ptr<Service> service)
{
    if (service->tls)
    {
        std::make_shared<Connection<TlsStream>>(std::move(socket), std::move(service))->start();
    }
    else
    {
        std::make_shared<Connection<PlainStream>>(std::move(socket), std::move(service))->start();
    }
}
} // namespace simulator
