#include "station/Commands/Arguments.h"
#include "station/Commands/Commands.h"
#include "station/Commands/Fonts.h"
#include "station/Http/Server.h"
#include "station/Platform/Platform.h"
#include "station/Services.h"

#include <fstream>
#include <iostream>
#include <string>
#include <system_error>
#include <thread>

namespace Station {
namespace {

// Whoever waits for the file never reads half a number.
void WritePortFile(const std::filesystem::path& file, int port)
{
    std::filesystem::path temporary = file;
    temporary += ".new";
    std::ofstream out(temporary);
    out << port << '\n';
    out.close();
    std::error_code error;
    if (out)
        std::filesystem::rename(temporary, file, error);
    if (!out || error)
        throw StoreError("The port file " + file.u8string() + " can't be written.");
}

}  // namespace

int ServeCommand(const CommandLine& line)
{
    const Arguments arguments(line, {"--data", "--host", "--port", "--port-file", "--key"},
                              {"--control", "--require-account"});
    if (!arguments.Words().empty())
        throw UsageError("serve takes no words, only options");
    const std::filesystem::path data = arguments.Path("--data");
    const std::string host = arguments.Text("--host", "127.0.0.1");
    const int port = static_cast<int>(arguments.Number("--port", 0, 0, 65535));
    if (arguments.Has("--key"))
        ShareCipherKey(arguments.Path("--key"), data);
    Platform::HoldStopSignals();
    Services services(data);
    services.has_control = arguments.Has("--control");
    services.require_account = arguments.Has("--require-account");
    StartFonts();
    Server server(services);
    if (!server.Bind(host, port))
        throw StoreError("The station can't listen on " + host + ":" + std::to_string(port) +
                         "; the port may be in use.");
    std::thread serving([&server] { server.Serve(); });
    std::cout << "listening on http://" << host << ":" << server.Port() << std::endl;
    if (arguments.Has("--port-file"))
        WritePortFile(arguments.Path("--port-file"), server.Port());
    Platform::WaitForStopSignal();
    server.Stop();
    serving.join();
    return ExitGood;
}

}  // namespace Station
