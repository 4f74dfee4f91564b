#include "station/Recording/RecordingSeeder.h"

#include "station/Clock.h"
#include "station/Recording/ClipWriter.h"
#include "station/Recording/MovingScene.h"
#include "station/Recording/Recordings.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace Station {
namespace {

constexpr std::int64_t kSecondsOfFile = 60;

// One file to be drawn.
struct Job
{
    const MovingScene* scene = nullptr;
    std::int64_t begin = 0;  // seconds since 1970
    std::filesystem::path file;
};

EncoderPlan PlanOfVideo()
{
    EncoderPlan plan;
    plan.width = kVideoWidth;
    plan.height = kVideoHeight;
    plan.time_base = {1, kVideoRate};
    plan.frame_rate = {kVideoRate, 1};
    plan.pixel_shape = {1, 1};
    plan.range = AVCOL_RANGE_MPEG;
    plan.matrix = AVCOL_SPC_SMPTE170M;
    plan.primaries = AVCOL_PRI_SMPTE170M;
    plan.transfer = AVCOL_TRC_SMPTE170M;
    plan.preset = "ultrafast";
    plan.profile = "baseline";
    plan.quality = 26;
    plan.is_even = true;
    plan.group = 2 * kVideoRate;
    plan.threads = 1;  // the same bytes everywhere
    return plan;
}

void DrawFile(const Job& job)
{
    const EncoderPlan plan = PlanOfVideo();
    FrameEncoder encoder(plan);
    ClipStreams streams;
    streams.video = &encoder.Stream();
    streams.video_box = WriteBox(encoder.Sets());
    ClipWriter writer(job.file, ClipFormat::Mp4, streams);
    const auto sink = [&](AVPacket& packet) {
        packet.duration = 1;
        writer.WriteVideo(packet, plan.time_base);
    };
    const av::Frame frame = NewFrame();
    frame->width = kVideoWidth;
    frame->height = kVideoHeight;
    frame->format = AV_PIX_FMT_YUV420P;
    Check(av_frame_get_buffer(frame.get(), 0), "There is no memory for the video");
    for (std::int64_t i = 0; i < kSecondsOfFile * kVideoRate; ++i) {
        Check(av_frame_make_writable(frame.get()), "There is no memory for the video");
        job.scene->Paint(*frame, job.begin + i / kVideoRate, static_cast<int>(i % kVideoRate));
        frame->pts = i;
        encoder.Encode(*frame, sink);
    }
    encoder.Finish(sink);
    writer.Finish();
}

// As many at once as there are processors; the first failure ends the work.
void DrawFiles(const std::vector<Job>& jobs)
{
    std::atomic<std::size_t> next{0};
    std::mutex mutex;
    std::exception_ptr failure;
    const auto work = [&] {
        for (std::size_t i = next++; i < jobs.size(); i = next++) {
            try {
                DrawFile(jobs[i]);
            } catch (...) {
                const std::lock_guard<std::mutex> lock(mutex);
                failure = failure ? failure : std::current_exception();
                next = jobs.size();
            }
        }
    };
    std::vector<std::thread> threads;
    const unsigned count = std::max(1u, std::thread::hardware_concurrency());
    for (unsigned i = 0; i < count; ++i)
        threads.emplace_back(work);
    for (std::thread& thread : threads)
        thread.join();
    if (failure)
        std::rethrow_exception(failure);
}

std::vector<std::pair<std::int64_t, std::string>> CamerasWithScenes(Database& database)
{
    Statement query = database.Prepare("SELECT id, scene FROM cameras WHERE scene != '' ORDER BY id");
    std::vector<std::pair<std::int64_t, std::string>> cameras;
    while (query.Step())
        cameras.emplace_back(query.Int(0), query.Text(1));
    return cameras;
}

std::string NameOf(const std::string& scene, std::int64_t begin)
{
    return scene + "-" + FormatTimeForFile(begin) + ".mp4";
}

}  // namespace

void SeedRecordings(Database& database, const std::filesystem::path& data, std::int64_t end, int minutes)
{
    EnsureRecordings(database);
    const std::int64_t begin = end - minutes * kSecondsOfFile;
    const auto cameras = CamerasWithScenes(database);
    std::error_code error;
    std::filesystem::create_directories(RecordingFolder(data), error);
    std::map<std::string, std::unique_ptr<MovingScene>> scenes;
    std::vector<Job> jobs;
    for (const auto& camera : cameras) {
        std::unique_ptr<MovingScene>& moving = scenes[camera.second];
        if (moving || minutes == 0)
            continue;
        const Scene& scene = FindScene(camera.second);
        const auto seed = static_cast<std::uint64_t>(camera.first) * 7919u;
        moving = std::make_unique<MovingScene>(scene, seed, LightAt(scene, ToCalendar(begin).hour));
        for (std::int64_t at = begin; at < end; at += kSecondsOfFile)
            jobs.push_back({moving.get(), at, RecordingFolder(data) / NameOf(camera.second, at)});
    }
    DrawFiles(jobs);
    database.Run("BEGIN");
    for (const auto& camera : cameras)
        for (std::int64_t at = begin; at < end; at += kSecondsOfFile)
            AddRecording(
                database,
                {0, camera.first, {at * 1000, (at + kSecondsOfFile) * 1000}, NameOf(camera.second, at)});
    database.Run("COMMIT");
}

}  // namespace Station
