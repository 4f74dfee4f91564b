#include "station/Commands/Arguments.h"
#include "station/Commands/Commands.h"
#include "station/Data/Store.h"
#include "station/Import/PhotographImport.h"

#include <iostream>

namespace Station {

int ImportCommand(const CommandLine& line)
{
    const Arguments arguments(line, {"--data", "--camera"}, {});
    if (arguments.Words().size() != 1)
        throw UsageError("import is used as: station import FOLDER --data DIR [--camera N]");
    const std::filesystem::path data = arguments.Path("--data");
    const std::int64_t camera = arguments.Number("--camera", 0, 1, INT64_MAX);
    const auto database = OpenForWriting(data);
    const ImportCount count =
        ImportPhotographs(*database, data, std::filesystem::u8path(arguments.Words()[0]), camera, std::cerr);
    std::cout << "imported " << count.added << " photographs";
    if (count.known > 0)
        std::cout << ", " << count.known << " were there already";
    if (count.refused > 0)
        std::cout << ", " << count.refused << " skipped";
    std::cout << std::endl;
    if (count.added + count.known == 0) {
        std::cerr << "station: no photograph (JPEG or PNG) was found that can be read\n";
        return ExitFailed;
    }
    return count.refused > 0 ? ExitSomeSkipped : ExitGood;
}

}  // namespace Station
