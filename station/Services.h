#pragma once

#include "station/Data/Accounts.h"
#include "station/Data/Store.h"
#include "station/Dock/DockFiles.h"
#include "station/Drawing/EventPictures.h"
#include "station/Evidence/Evidence.h"
#include "station/Http/Faults.h"
#include "station/Http/RequestCounts.h"
#include "station/Making/Workshop.h"
#include "station/Recording/CutFiles.h"
#include "station/Recording/Recordings.h"
#include "station/Report/PageCursors.h"
#include "station/Report/PersonSearch.h"
#include "station/Report/SyntheticReport.h"

#include <filesystem>

namespace Station {

// What the endpoints work with. Every member may be used from any thread.
struct Services
{
    explicit Services(const std::filesystem::path& data)
        : store(data),
          accounts(store),
          pictures(data),
          cuts(data),
          reports(GeneratedFolder(data)),
          logs(GatheredFolder(data))
    {
        const Store::Loan database = store.Borrow();
        EnsureDockFiles(*database);
        EnsureEvidence(*database);
        EnsureRecordings(*database);
        EnsurePersons(*database);
    }

    Store store;
    AccountCheck accounts;
    EventPictures pictures;
    CutFiles cuts;
    PageCursors cursors;
    SyntheticReports synthetic;
    FaultPlan faults;
    RequestCounts counts;
    bool has_control = false;
    bool require_account = false;
    // Behind all that their orders work with, so that they end first.
    Workshop reports;
    Workshop logs;
};

}  // namespace Station
