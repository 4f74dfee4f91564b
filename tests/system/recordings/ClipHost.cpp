// clip_host MODULE STATION DATA: loads the video plug-in as a client does, carries out the request that comes
// in on the standard input, and prints what came of it.
#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellClientHostSettings/Plugins.h"

#include <QLibrary>

#include <iostream>
#include <iterator>
#include <string>

int main(int argc, char** argv)
{
    if (argc != 4)
        return 2;
    ZellClientHost::ClientSettings settings;
    settings.sites[0] = argv[2];
    settings.data_path = argv[3];
    ZellClientHost::SetClientSettings(settings);
    std::string reason;
    if (!ZellClientHost::LoadPlugin("clipvault.c", argv[1], reason)) {
        std::cerr << reason << "\n";
        return 1;
    }
    using Start = bool (*)(const std::string&, const std::string&, std::string&);
    const auto start = reinterpret_cast<Start>(QLibrary(argv[1]).resolve("StartDownloadVideoFile"));
    if (start == nullptr)
        return 1;
    const std::string request{std::istreambuf_iterator<char>(std::cin), {}};
    std::string response;
    const bool is_good = start("", request, response);
    std::cout << (is_good ? "true " : "false ") << response << std::endl;
    ZellClientHost::StopPlugin("clipvault.c");
    return 0;
}
