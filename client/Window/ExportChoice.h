#pragma once

#include "RequestCheck.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace FetchyardClient {

// What a person fills in to put an export together. Texts are UTF-8; times are ISO 8601 in UTC, empty for
// open ends.
struct ExportChoice
{
    enum class Pictures { None, Linked, Embedded };

    int site = 0;
    std::string report = "/api/v1/events/report";  // path at the station
    std::string name;
    std::string save_folder;  // empty: the client's own
    std::string begin;
    std::string end;
    std::string cameras;      // numbers, with commas or blanks between
    std::string event_types;  // with commas between
    int least_level = 0;      // 0: any
    std::string text;
    int format = 0;  // 0 Excel, 1 CSV, 2 PDF, 3 text
    Pictures pictures = Pictures::None;
    bool with_videos = false;  // of the cameras, from begin to end
    bool is_packed = false;
    std::string archive_password;
};

// A field of the form, for violations.
enum class ExportField {
    None,
    Site,
    Report,
    Name,
    Folder,
    Range,
    Cameras,
    Types,
    Level,
    Text,
    Format,
    Pictures,
    Videos,
    Password,
};

struct FieldViolation
{
    ExportField field = ExportField::None;  // None: of the request as a whole
    std::string words;
};

// The request that the choice makes, as the command line runs it.
nlohmann::json MakeRequest(const ExportChoice& choice);
// What is wrong with the choice, by field: what the schema refuses, and what the form knows beyond it.
std::vector<FieldViolation> CheckChoice(const ExportChoice& choice);

}  // namespace FetchyardClient
