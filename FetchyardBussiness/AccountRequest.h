#pragma once

#include "FetchyardBussiness/RequestReader.h"
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

// Where a record keeps what belongs to a password check.
struct CheckPasswordMembers
{
    std::string& str_request_condition;
    std::string& str_received_condition;
    bool& check_password_request;
    int& password_type;
    int& web_login_model;
};

template <typename Settings>
CheckPasswordMembers CheckPasswordOf(Settings& settings)
{
    return {settings.str_request_condition, settings.str_received_condition, settings.check_password_request,
            settings.password_type, settings.web_login_model};
}

// Merges a server request's "CheckPasswordRequest" into the condition that the record holds already. The
// plain password goes to the client's account and nowhere else; the condition gets the ciphered one. Does
// nothing if the request has none.
void ReadCheckPassword(const details::RequestReader& server_request, const CheckPasswordMembers& record);

// Puts the present account into the condition, whose password type becomes that of the client's user if the
// client is no web client.
void RenewAccount(const CheckPasswordMembers& record);

}  // namespace FetchyardBussiness
