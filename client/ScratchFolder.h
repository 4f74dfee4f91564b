#pragma once

#include <QLockFile>

#include <memory>
#include <string>

namespace FetchyardClient {

// The folder in which the archiver and the PDF tool work, for the life of the object. What a killed client
// left there is removed, since the archiver would add to an archive of the same name; as long as another
// client of this machine works there, nothing is.
class ScratchFolder
{
public:
    // Makes the folder. False with the reason in words.
    bool Open(const std::string& folder, std::string& reason);

private:
    std::unique_ptr<QLockFile> mark_;
};

}  // namespace FetchyardClient
