#pragma once

#include "ZellNetLink/RapidJsonProto.h"

#include <string>

namespace FetchyardBussiness {

// Account data of a server request that needs a password check.
struct AccountFields
{
    std::string user_name;
    std::string ciphered_password;
    int password_type = -1;
    int web_login_model = -1;  // used when the host is a web client
};

// What of it may be taken from the running client.
struct AccountResult
{
    bool from_client = false;
    int client_password_type = 0;  // of the client's user, if from_client
};

// Writes the fields under "/CheckPasswordRequest" into the condition. A web client is told apart by an empty
// identity and the given login model; any other client gives its own.
AccountResult WriteAccountFields(ZellNetLink::CRapidJsonProto& condition, const AccountFields& fields);

}  // namespace FetchyardBussiness
