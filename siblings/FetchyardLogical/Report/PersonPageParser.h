#pragma once

#include "FetchyardLogical/CmsGetPersonPicFileData.h"

#include <string>

namespace FetchyardLogical::details {

// Reads the answer to a person search into the record: picture_list, is_all_finished, error_code and what is
// left of the tries. False with the server's own pair if the answer names a failure, and with (23, 1) if it
// is neither that nor a page; picture_list is then empty, is_all_finished as it was. body keeps its text, but
// may be given more capacity.
//
// What counts as a page:
// - Members may come in any order. One that is null counts as absent, one that is unknown is passed over.
// - "TotalPageIsFinished" and "Persons", which may be empty, are there. "Pictures" of a person may be absent.
// - A picture has an "Address" and a "Title", the stem of its file. A title is part of a path, so it is not
//   empty and has no "/", no "\\" and no zero byte in it.
// A refusal may have "RemainingLoginNumber" and "RemainingLoginType", as texts or whole numbers.
bool ParsePersonPage(std::string& body, CmsGetPersonPicFileData& data);

}  // namespace FetchyardLogical::details
