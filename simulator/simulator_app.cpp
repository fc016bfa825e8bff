#include "simulator_app.h"

#include "fleet_config.h"
#include "fleet_server.h"
#include "loopback.h"
#include "simulator_error.h"
#include "stop_wish.h"
#include "text_file.h"

#include <CLI/CLI.hpp>

#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>

#include <exception>
#include <iostream>

namespace simulator
{
namespace
{
struct Options
{
    std::string fleetFile;
    std::string folder;
    std::string listen = "127.0.0.1:0";
    std::string user = "admin";
    std::string passwordFile;
    std::size_t count = 1;
    bool plainHttp = false;
    bool control = false;
    bool stopOnEof = false;
    std::string readyFile;
    std::string certificateFile;
    std::string statisticsFile;
};

void declare(CLI::App& app, Options& options)
{
    auto* config = app.add_option("--config", options.fleetFile, "A fleet file with the controllers to serve");
    auto* serve = app.add_option("--serve", options.folder, "One folder of Redfish resources to serve");
    serve->excludes(config);
    app.add_option("--listen", options.listen, "ADDRESS:PORT for --serve, loopback only; port 0: chosen by the system")
        ->needs(serve)
        ->capture_default_str();
    app.add_option("--user", options.user, "User name for --serve")->needs(serve)->capture_default_str();
    app.add_option("--password-file", options.passwordFile, "File whose first line is the password for --serve")
        ->needs(serve);
    app.add_option("--count", options.count, "Copies for --serve, on consecutive addresses")
        ->needs(serve)
        ->check(CLI::Range(1, 10000))
        ->capture_default_str();
    app.add_flag("--http", options.plainHttp, "Plain HTTP for --serve")->needs(serve);
    app.add_option("--ready-file", options.readyFile, "Write the controllers' addresses here (JSON) when ready");
    app.add_option("--cert-out", options.certificateFile, "Write the certificate to trust here (PEM)");
    app.add_option("--stats", options.statisticsFile, "Write statistics here (JSON) at the end");
    app.add_flag("--control", options.control, "Serve the statistics without login at /simulator/statistics");
    app.add_flag("--stop-on-eof", options.stopOnEof, "Stop when the standard input ends");
}

std::vector<ControllerConfig> fleetOf(const Options& options)
{
    if (!options.fleetFile.empty())
    {
        return loadFleet(options.fleetFile);
    }
    if (options.folder.empty())
    {
        throw SimulatorError("nothing to serve; name a fleet file with --config or a folder with --serve");
    }
    ControllerConfig config = loadSingle(options.folder);
    const ListenPlace place = parseListenPlace(options.listen);
    config.address = place.address;
    config.port = place.port;
    config.tls = !options.plainHttp;
    config.user = options.user;
    if (!options.passwordFile.empty())
    {
        constexpr std::size_t kMostPasswordBytes = 4096;
        const std::string content = readTextFile(options.passwordFile, kMostPasswordBytes, "password file");
        config.password = content.substr(0, content.find_first_of("\r\n"));
    }
    if (config.password.empty() && config.behaviour.authentication != Authentication::None)
    {
        throw SimulatorError("--serve needs --password-file with a password in its first line");
    }
    return copies(config, options.count, CopyStep::Address);
}

void announce(const FleetServer& server, const Options& options)
{
    if (!options.certificateFile.empty())
    {
        replaceTextFile(options.certificateFile, server.authorityPem());
    }
    if (!options.readyFile.empty())
    {
        replaceTextFile(options.readyFile, endpointsJson(server.endpoints()));
    }
    for (const Endpoint& endpoint : server.endpoints())
    {
        std::cout << endpoint.name << ' ' << endpoint.url << '\n';
    }
    std::cout << "ready" << std::endl;
}

void serve(const Options& options)
{
    // The signals are taken before anything is announced: a parent may stop us as soon as it has read "ready".
    boost::asio::io_context loop;
    boost::asio::signal_set signals(loop);
    for (const int number : stopSignals())
    {
        signals.add(number);
    }
    signals.async_wait([&loop](const boost::system::error_code&, int) { loop.stop(); });
    if (options.stopOnEof)
    {
        watchStandardInput(loop, [&loop] { loop.stop(); });
    }
    FleetServer server(fleetOf(options), options.control ? Control::On : Control::Off);
    announce(server, options);
    loop.run();
    server.stop();
    if (!options.statisticsFile.empty())
    {
        replaceTextFile(options.statisticsFile, statisticsJson(server.statistics()));
    }
}
} // namespace

int runSimulator(int argc, char** argv)
{
    CLI::App app("Serves folders of Redfish resources as management controllers on loopback addresses.",
                 "korvan_simulator");
    Options options;
    declare(app, options);
    try
    {
        app.parse(argc, argv);
        serve(options);
    }
    catch (const CLI::ParseError& error)
    {
        return app.exit(error);
    }
    catch (const std::exception& error)
    {
        std::cerr << "korvan_simulator: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
} // namespace simulator
