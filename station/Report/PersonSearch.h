#pragma once

#include "station/Data/Database.h"
#include "station/Report/Condition.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Station {

// What a client asks for when it searches for pictures of persons.
struct PersonCondition
{
    std::int64_t page_index = 1;  // from 1
    std::int64_t page_size = 100;
    std::vector<std::int64_t> person_ids;
    std::string text;  // part of the person's name
    std::optional<std::int64_t> begin;
    std::optional<std::int64_t> end;
    std::vector<std::int64_t> camera_ids;
    std::int64_t min_confidence = 0;                 // percent
    std::optional<std::int64_t> pictures_of_person;  // most pictures of one person, the first by time
    std::optional<std::int64_t> limit;               // most pictures of the whole search

    PasswordCheck password_check;
};

struct PictureOfPerson
{
    std::string title;  // fit for a file name, and no other picture's
    std::string address;
};

// A person as the events know them: all events with one name are one person.
struct FoundPerson
{
    std::int64_t id = 0;  // number of the first event with the name, so that it stays
    std::string name;
    std::vector<PictureOfPerson> pictures;
};

// One page has at most page_size pictures. A person whose pictures go on stands on the next page again.
struct PersonPage
{
    bool is_last = false;
    std::vector<FoundPerson> persons;
};

// False, with the reason in words, if a member is missing or has a wrong value. Others are passed over.
bool ReadPersonCondition(const nlohmann::json& json, PersonCondition& condition, std::string& reason);

// Pictures in the order of names, times and numbers, so that pages never overlap. Throws StoreError.
PersonPage ReadPersonPage(Database& database, const PersonCondition& condition);

// Lets a store find the events of a person. Throws StoreError.
void EnsurePersons(Database& database);

}  // namespace Station
