#pragma once

#include <string>

namespace FetchyardLogical::details {

// Stores the login that the JSON text holds: "UserName" and the ciphered "PassWord". False, with nothing
// stored, if the text is no JSON, one of the two is absent or empty, or the password is not of this client's
// cipher and key.
bool StoreSensitiveAccount(const std::string& text);

}  // namespace FetchyardLogical::details
