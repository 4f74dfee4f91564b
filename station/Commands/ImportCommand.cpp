#include "station/Commands/Arguments.h"
#include "station/Commands/Commands.h"
#include "station/Data/Store.h"
#include "station/Import/PhotographImport.h"
#include "station/Recording/RecordingImport.h"

#include <iostream>
#include <system_error>

namespace Station {
namespace {

int ImportVideo(const Arguments& arguments, const std::filesystem::path& file)
{
    const std::int64_t camera = arguments.Number("--camera", 0, 1, INT64_MAX);
    const auto begin = ParseMilliseconds(arguments.Text("--begin", ""));
    if (camera == 0 || !begin)
        throw UsageError("a video needs --camera N and --begin with a time such as 2026-01-31T09:05:07Z");
    const std::filesystem::path data = arguments.Path("--data");
    const Recording recording = ImportRecording(*OpenForWriting(data), data, file, camera, *begin);
    std::cout << "imported " << FormatSpans({recording.span}) << " of camera " << camera << std::endl;
    return ExitGood;
}

}  // namespace

int ImportCommand(const CommandLine& line)
{
    const Arguments arguments(line, {"--data", "--camera", "--begin"}, {});
    if (arguments.Words().size() != 1)
        throw UsageError(
            "import is used as: fetchyard-station import FOLDER_OR_VIDEO --data DIR [--camera N] [--begin "
            "TIME]");
    const std::filesystem::path source = std::filesystem::u8path(arguments.Words()[0]);
    std::error_code error;
    if (std::filesystem::is_regular_file(source, error))
        return ImportVideo(arguments, source);
    if (arguments.Has("--begin"))
        throw UsageError("--begin is for a video; " + source.u8string() + " is none");
    const std::filesystem::path data = arguments.Path("--data");
    const std::int64_t camera = arguments.Number("--camera", 0, 1, INT64_MAX);
    const auto database = OpenForWriting(data);
    const ImportCount count = ImportPhotographs(*database, data, source, camera, std::cerr);
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
