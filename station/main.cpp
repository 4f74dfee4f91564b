#include "station/Commands/Arguments.h"
#include "station/Commands/Commands.h"
#include "station/Platform/Platform.h"
#include "station/Recording/Clip.h"

#include <QString>

#include <exception>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace {

constexpr char kUsage[] =
    R"(usage: fetchyard-station COMMAND
  seed --data DIR [--events 4000] [--cameras 12] [--weeks 4] [--seed 1] [--end TIME] [--minutes 3]
       [--replace]
      makes a site with alarm events over some weeks, and video of its last minutes
  import FOLDER --data DIR [--camera N]
      makes events of a folder of photographs (JPEG, PNG); ends with 3 if some could not be read
  import FILE --data DIR --camera N --begin TIME
      takes a video as what the camera recorded from that time on
  serve --data DIR [--host 127.0.0.1] [--port 0] [--port-file FILE] [--control] [--require-account] [--key FILE]
      answers until it is told to end; port 0 takes a free one, --control lets tests make it fail
  account add NAME --data DIR
      sets an account; its password is read from the standard input
  trust KEYFILE --data DIR
      shares the key that a client ciphers passwords with
)";

// Of Qt's own messages only what a person must know; a broken photograph is told in the station's words.
void PassSeriousMessages(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::cerr << "station: " << text.toStdString() << std::endl;
}

using Command = int (*)(const Station::CommandLine&);

int Run(const std::vector<std::string>& words)
{
    const std::map<std::string, Command> commands = {{"seed", Station::SeedCommand},
                                                     {"import", Station::ImportCommand},
                                                     {"serve", Station::ServeCommand},
                                                     {"account", Station::AccountCommand},
                                                     {"trust", Station::TrustCommand}};
    const std::string name = words.empty() ? "" : words[0];
    if (name == "--help" || name == "-h" || name == "help") {
        std::cout << kUsage;
        return Station::ExitGood;
    }
    const auto command = commands.find(name);
    if (command == commands.end()) {
        std::cerr << kUsage;
        return Station::ExitUsage;
    }
    return command->second(Station::CommandLine(words.begin() + 1, words.end()));
}

}  // namespace

int main(int argc, char** argv)
{
    qInstallMessageHandler(PassSeriousMessages);
    Station::SilenceVideoLibraries();
    try {
        return Run(Station::Platform::CommandWords(argc, argv));
    } catch (const Station::UsageError& error) {
        std::cerr << "station: " << error.what() << "; try: fetchyard-station --help\n";
        return Station::ExitUsage;
    } catch (const std::exception& error) {
        std::cerr << "station: " << error.what() << '\n';
        return Station::ExitFailed;
    }
}
