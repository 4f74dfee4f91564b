#include "Platform/SheetStreams.h"

#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

namespace ZellOfficeKit {

std::int64_t StreamSize(std::FILE* stream)
{
    return ftello(stream);
}

CSheetStreams::CSheetStreams(const std::vector<std::FILE*>& streams)
{
    for (std::FILE* stream : streams) {
        const int descriptor = fileno(stream);
        watched_.push_back({stream, descriptor, dup(descriptor)});
    }
}

CSheetStreams::~CSheetStreams()
{
    for (const Watched& one : watched_) {
        if (one.copy >= 0)
            close(one.copy);
    }
}

void CSheetStreams::CloseThoseLeft() const
{
    for (const Watched& one : watched_) {
        struct stat now = {};
        struct stat own = {};
        if (one.copy >= 0 && fstat(one.descriptor, &now) == 0 && fstat(one.copy, &own) == 0 &&
            now.st_dev == own.st_dev && now.st_ino == own.st_ino)
            std::fclose(one.stream);
    }
}

}  // namespace ZellOfficeKit
