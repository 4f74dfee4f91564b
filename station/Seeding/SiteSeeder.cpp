#include "station/Seeding/SiteSeeder.h"

#include "station/Clock.h"
#include "station/Data/Store.h"
#include "station/Random.h"
#include "station/Seeding/SiteTexts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

namespace Station {
namespace {

struct TypeChance
{
    std::string_view type;
    int level;  // the usual one
    int chance;
};

constexpr std::array<TypeChance, 7> kOutdoors = {{{"Vehicle", 1, 40},
                                                  {"Line crossing", 2, 20},
                                                  {"Loitering", 2, 14},
                                                  {"Parking violation", 2, 10},
                                                  {"Intrusion", 4, 10},
                                                  {"Camera tampering", 4, 3},
                                                  {"Fire", 5, 1}}};
constexpr std::array<TypeChance, 5> kAtFence = {{{"Line crossing", 3, 36},
                                                 {"Loitering", 2, 26},
                                                 {"Intrusion", 5, 26},
                                                 {"Camera tampering", 4, 6},
                                                 {"Fire", 5, 2}}};
constexpr std::array<TypeChance, 8> kIndoors = {{{"Face match", 1, 44},
                                                 {"Loitering", 2, 16},
                                                 {"Crowd", 2, 12},
                                                 {"Line crossing", 2, 10},
                                                 {"Abandoned object", 3, 8},
                                                 {"Intrusion", 4, 6},
                                                 {"Camera tampering", 4, 2},
                                                 {"Fire", 5, 1}}};

template <std::size_t N>
const TypeChance& PickByChance(Random& random, const std::array<TypeChance, N>& table)
{
    int total = 0;
    for (const TypeChance& entry : table)
        total += entry.chance;
    int at = random.Below(total);
    for (const TypeChance& entry : table) {
        at -= entry.chance;
        if (at < 0)
            return entry;
    }
    return table.back();
}

const TypeChance& PickType(Random& random, const std::string& scene)
{
    if (scene == "fence")
        return PickByChance(random, kAtFence);
    if (scene == "street" || scene == "parking")
        return PickByChance(random, kOutdoors);
    return PickByChance(random, kIndoors);
}

// How busy the site is at an hour of a day, from 0 to 1.
double Rhythm(const Calendar& when)
{
    const bool is_weekend = when.weekday == 0 || when.weekday == 6;
    const double hour = when.hour + when.minute / 60.0;
    const double morning = std::exp(-(hour - 8.2) * (hour - 8.2) / 3.0);
    const double noon = 0.7 * std::exp(-(hour - 12.8) * (hour - 12.8) / 6.0);
    const double evening = 0.9 * std::exp(-(hour - 17.3) * (hour - 17.3) / 3.5);
    const double busy = 0.12 + std::max({morning, noon, evening});
    return std::min(1.0, is_weekend ? 0.1 + busy * 0.25 : busy);
}

// A time of the weeks before the end, likelier where the site is busy.
std::int64_t PickTime(Random& random, const SeedPlan& plan)
{
    const std::int64_t span = static_cast<std::int64_t>(plan.weeks) * 7 * 86400;
    std::int64_t time = plan.end - 1;
    constexpr int kTries = 60;
    for (int attempt = 0; attempt < kTries; ++attempt) {
        time = plan.end - 1 - static_cast<std::int64_t>(random.Next() % static_cast<std::uint64_t>(span));
        if (random.Fraction() < Rhythm(ToCalendar(time)))
            break;
    }
    return time;
}

bool HasPerson(const std::string& type)
{
    return type == "Face match" || type == "Loitering" || type == "Intrusion";
}

Event MakeEvent(Random& random, const Camera& camera, std::int64_t time)
{
    Event event;
    event.time = time;
    event.camera_id = camera.id;
    const TypeChance& kind = PickType(random, camera.scene);
    event.type = std::string(kind.type);
    event.level = std::clamp(kind.level + random.Between(-1, 1) * (random.OneIn(3) ? 1 : 0), 1, 5);
    if (event.type == "Face match" || (HasPerson(event.type) && random.OneIn(4)))
        event.person = SomePerson(random);
    if (event.type == "Vehicle" || event.type == "Parking violation")
        event.plate = SomePlate(random);
    event.confidence = random.Between(61, 99);
    event.text = SomeText(random, event.type, camera.place);
    return event;
}

std::vector<Camera> MakeCameras(Database& database, int count)
{
    std::vector<Camera> cameras;
    for (int i = 0; i < count; ++i) {
        const CameraText& text = CameraTextOf(i);
        const int round = i / 12;
        Camera camera{0, text.name, text.place, text.scene};
        if (round > 0)
            camera.name += " (" + std::to_string(round + 1) + ")";
        camera.id = AddCamera(database, camera);
        cameras.push_back(camera);
    }
    return cameras;
}

}  // namespace

void SeedSite(Database& database, const SeedPlan& plan)
{
    Random random(plan.seed);
    database.Run("BEGIN");
    const std::vector<Camera> cameras = MakeCameras(database, plan.cameras);
    std::vector<std::int64_t> times;
    times.reserve(static_cast<std::size_t>(plan.events));
    for (int i = 0; i < plan.events; ++i)
        times.push_back(PickTime(random, plan));
    // Numbers grow with time, as they do where events are stored when they happen.
    std::sort(times.begin(), times.end());
    for (const std::int64_t time : times)
        AddEvent(database, MakeEvent(random, random.Pick(cameras), time));
    database.Run("COMMIT");
}

}  // namespace Station
