#include "Session.h"

#include "ZellBase/Log.h"
#include "ZellBaseHost/ProcessExit.h"

#include <utility>

namespace ZellPictureLoader {
namespace {

using Zell::Base::Error::ErrorCode;
using ZellNetLink::HttpClient;
using ZellNetLink::HttpRequest;
using ZellNetLink::HttpResponse;
using Clock = std::chrono::steady_clock;

// A client that does not end a cancelled transfer in that time is left alone with it.
constexpr std::chrono::seconds kPatienceWithCancelled{2};

// The account is part of it: what one user may see is not for the next.
std::string KeyOf(const PictureRequest& request)
{
    return request.cacheable ? request.address.user + '\n' + request.address.url : std::string();
}

ErrorCode AnswerErrorCode(ZellNetLink::AnswerError code)
{
    return ErrorCode(ZellNetLink::kModuleAnswer, code);
}

bool IsSet(const ErrorCode& error)
{
    return error.iFirstCode != 0 || error.iSecondCode != 0;
}

}  // namespace

std::shared_ptr<CSession> CSession::Start(const std::string& root, const LoaderBounds& bounds,
                                          ErrorCode& error)
{
    std::shared_ptr<CCacheFolder> folder = CCacheFolder::Make(root, error);
    if (folder == nullptr)
        return nullptr;
    std::shared_ptr<CSession> session(new CSession(std::move(folder), bounds));
    session->store_ = std::thread([running = session.get()] { running->RunStore(); });
    return session;
}

CSession::CSession(std::shared_ptr<CCacheFolder> folder, const LoaderBounds& bounds)
    : bounds_(bounds),
      folder_(std::move(folder)),
      cache_(bounds.cache_bytes, bounds.cache_files, bounds.keep_unasked)
{
}

void CSession::Stop()
{
    std::vector<std::uint64_t> ids;
    std::vector<std::shared_ptr<CPicture>> removed;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
        ForgetQueue();
        for (const TransferPtr& transfer : running_) {
            ids.push_back(transfer->id);
            End(transfer, nullptr, AnswerErrorCode(ZellNetLink::Cancelled));
        }
        store_work_.notify_all();
    }
    // A transfer whose launch is not finished has no id yet; its launch sees the stop.
    for (const std::uint64_t id : ids) {
        if (id != 0)
            HttpClient::Instance().Cancel(id);
    }
    store_.join();
    std::unique_lock<std::mutex> lock(mutex_);
    quiet_.wait_for(lock, kPatienceWithCancelled, [this] { return running_.empty(); });
    to_store_.clear();
    by_key_.clear();
    cache_.Clear(removed);
    lock.unlock();
}

std::shared_ptr<CPicture> CSession::Fetch(const PictureRequest& request, ErrorCode& error)
{
    // A transfer that the warm-up had begun may fail without a word: whoever asks has a try of their own.
    for (bool last_try = false;; last_try = true) {
        std::shared_ptr<CPicture> cached;
        TransferList begin;
        TransferPtr transfer;
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            if (stopping_) {
                error = AnswerErrorCode(ZellNetLink::Cancelled);
                return nullptr;
            }
            transfer = FindOrBegin(request, cached, begin);
        }
        Launch(begin);
        if (transfer == nullptr)
            return cached;
        WaitForEnd(*transfer);
        // What has ended does not change any more.
        error = transfer->error;
        if (transfer->picture != nullptr || !transfer->begun_by_warm_up || last_try)
            return transfer->picture;
    }
}

CSession::TransferPtr CSession::FindOrBegin(const PictureRequest& request, std::shared_ptr<CPicture>& cached,
                                            TransferList& begin)
{
    const std::string key = KeyOf(request);
    if (key.empty())
        return BeginAsked(request, key, begin);
    cached = cache_.Ask(key);
    if (cached != nullptr) {
        ++statistics_.cache_hits;
        BeginWarm(begin);
        return nullptr;
    }
    const auto found = by_key_.find(key);
    if (found == by_key_.end())
        return BeginAsked(request, key, begin);
    const TransferPtr& transfer = found->second;
    transfer->asked = true;
    if (transfer->state == State::Queued) {
        --queued_;
        transfer->request = request;
        Begin(transfer, begin);
    } else if (transfer->state == State::Running) {
        ++statistics_.joined;
    } else {
        ++statistics_.cache_hits;
    }
    return transfer;
}

CSession::TransferPtr CSession::BeginAsked(const PictureRequest& request, const std::string& key,
                                           TransferList& begin)
{
    auto transfer = std::make_shared<Transfer>();
    transfer->request = request;
    transfer->key = key;
    transfer->asked = true;
    if (!key.empty())
        by_key_[key] = transfer;
    Begin(transfer, begin);
    return transfer;
}

void CSession::Begin(const TransferPtr& transfer, TransferList& begin)
{
    transfer->state = State::Running;
    transfer->receiver = std::make_shared<CPictureReceiver>(folder_);
    running_.insert(transfer);
    ++statistics_.requests;
    begin.push_back(transfer);
}

void CSession::BeginWarm(TransferList& begin)
{
    const Clock::time_point now = Clock::now();
    while (warm_running_ < bounds_.connections && HasMemory() && !queue_.empty()) {
        const TransferPtr transfer = queue_.front();
        const bool queued = transfer->state == State::Queued;
        const bool wanted = now - transfer->queued_at < bounds_.keep_unasked;
        if (queued && wanted && !cache_.HasRoomFor(warm_running_ + to_store_.size() + 1, now))
            return;
        queue_.pop_front();
        if (!queued)
            continue;
        --queued_;
        if (!wanted) {
            by_key_.erase(transfer->key);
            continue;
        }
        transfer->begun_by_warm_up = true;
        ++warm_running_;
        ++statistics_.warm_requests;
        Begin(transfer, begin);
    }
}

void CSession::Warm(const std::vector<PictureRequest>& requests)
{
    TransferList begin;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        for (const PictureRequest& request : requests) {
            if (!TakeIn(request))
                break;
        }
        BeginWarm(begin);
    }
    Launch(begin);
}

// False if no further one can be taken in.
bool CSession::TakeIn(const PictureRequest& request)
{
    if (stopping_ || queued_ >= bounds_.queued_keys)
        return false;
    std::string key = KeyOf(request);
    if (key.empty() || cache_.Holds(key) || by_key_.count(key) != 0)
        return true;
    auto transfer = std::make_shared<Transfer>();
    transfer->request = request;
    transfer->key = std::move(key);
    transfer->queued_at = Clock::now();
    by_key_[transfer->key] = transfer;
    queue_.push_back(transfer);
    ++queued_;
    return true;
}

void CSession::ForgetQueue()
{
    for (const TransferPtr& transfer : queue_) {
        if (transfer->state == State::Queued)
            by_key_.erase(transfer->key);
    }
    queue_.clear();
    queued_ = 0;
}

void CSession::Launch(const TransferList& begin)
{
    for (const TransferPtr& transfer : begin)
        LaunchOne(transfer);
}

void CSession::LaunchOne(const TransferPtr& transfer)
{
    HttpRequest request;
    request.url = transfer->request.address.url;
    request.user = transfer->request.address.user;
    request.password = transfer->request.address.password;
    request.max_body = transfer->request.max_bytes;
    request.timeout_ms = transfer->request.timeout_ms;
    request.urgent = !transfer->begun_by_warm_up;
    request.sink = [receiver = transfer->receiver](std::int64_t, const char* data, std::size_t size) {
        return receiver->Take(data, size);
    };
    const std::uint64_t id = HttpClient::Instance().Start(
        std::move(request),
        [self = shared_from_this(), transfer](HttpResponse&& answer) { self->OnDone(transfer, answer); });
    bool stopped = false;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        transfer->id = id;
        stopped = stopping_;
    }
    if (stopped)
        HttpClient::Instance().Cancel(id);
}

void CSession::WaitForEnd(Transfer& transfer)
{
    // The mark goes last: its end may never return, and must not keep the lock then.
    const Zell::Base::details::CBlockedMark blocked;
    std::unique_lock<std::mutex> lock(mutex_);
    transfer.ended.wait(lock, [&transfer] { return transfer.state == State::Ended; });
}

// On the client's thread.
void CSession::OnDone(const TransferPtr& transfer, const HttpResponse& answer)
{
    std::shared_ptr<CPicture> picture = transfer->receiver->Finish();
    ErrorCode error = IsSet(transfer->receiver->error()) ? transfer->receiver->error() : answer.error;
    if (!IsSet(error) && picture == nullptr)
        error = AnswerErrorCode(ZellNetLink::AnswerNotUnderstood);
    if (IsSet(error))
        picture = nullptr;
    TransferList begin;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        transfer->receiver = nullptr;
        running_.erase(transfer);
        if (transfer->begun_by_warm_up)
            --warm_running_;
        if (picture == nullptr)
            ++statistics_.failures;
        if (transfer->state == State::Running)
            End(transfer, std::move(picture), error);
        BeginWarm(begin);
        if (running_.empty())
            quiet_.notify_all();
    }
    Launch(begin);
}

void CSession::End(const TransferPtr& transfer, std::shared_ptr<CPicture> picture, const ErrorCode& error)
{
    transfer->state = State::Ended;
    transfer->picture = std::move(picture);
    transfer->error = error;
    // While the disk is behind, a picture that is handed out anyway is not kept for later.
    const bool wanted = HasMemory() || !transfer->asked;
    if (!transfer->key.empty() && transfer->picture != nullptr && wanted) {
        memory_to_store_ += transfer->picture->memory();
        to_store_.push_back(transfer);
        store_work_.notify_one();
    } else if (!transfer->key.empty()) {
        by_key_.erase(transfer->key);
    }
    transfer->ended.notify_all();
}

// The disk has a thread of its own: it must not hold up transfers, nor those who wait for one.
void CSession::RunStore()
{
    const Zell::Base::details::CWorkerMark worker;
    while (const TransferPtr transfer = NextToStore())
        Store(transfer);
}

CSession::TransferPtr CSession::NextToStore()
{
    const Zell::Base::details::CBlockedMark blocked;
    std::unique_lock<std::mutex> lock(mutex_);
    store_work_.wait(lock, [this] { return stopping_ || !to_store_.empty(); });
    return stopping_ ? nullptr : to_store_.front();
}

void CSession::Store(const TransferPtr& transfer)
{
    std::shared_ptr<CPicture> file = MakeFile(transfer);
    TransferList begin;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (file != nullptr)
            cache_.Insert(transfer->key, std::move(file), transfer->asked, Clock::now());
        memory_to_store_ -= transfer->picture->memory();
        by_key_.erase(transfer->key);
        to_store_.pop_front();
        BeginWarm(begin);
        if (to_store_.empty())
            quiet_.notify_all();
    }
    Launch(begin);
}

// Null if the picture is not kept. Only this thread puts pictures in, so room that was made stays.
std::shared_ptr<CPicture> CSession::MakeFile(const TransferPtr& transfer)
{
    std::vector<std::shared_ptr<CPicture>> removed;
    const std::shared_ptr<CPicture>& picture = transfer->picture;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (!cache_.MakeRoom(picture->size(), Clock::now(), removed))
            return nullptr;
    }
    removed.clear();
    if (picture->is_file())
        return picture;
    const std::string path = folder_->NewFile();
    const ErrorCode error = picture->CopyTo(path);
    if (!IsSet(error))
        return std::make_shared<CPicture>(folder_, path, picture->size());
    Zell::Base::details::IOXTFormatLog(
        Zell::Base::details::kLogWarning, "ZellPictureLoader",
        "[%s]The cache can't be written, nothing is fetched ahead. error: %d[%s(%d)]",
        "ZellPictureLoader::CSession::MakeFile", error.iSecondCode, __FILE__, __LINE__);
    const std::lock_guard<std::mutex> lock(mutex_);
    ForgetQueue();
    return nullptr;
}

bool CSession::HasMemory() const
{
    return memory_to_store_ < bounds_.memory_bytes;
}

bool CSession::IsQuiet() const
{
    return running_.empty() && to_store_.empty();
}

bool CSession::WaitUntilQuiet(std::chrono::milliseconds timeout)
{
    const Zell::Base::details::CBlockedMark blocked;
    std::unique_lock<std::mutex> lock(mutex_);
    return quiet_.wait_for(lock, timeout, [this] { return IsQuiet(); });
}

LoaderStatistics CSession::Statistics()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    LoaderStatistics statistics = statistics_;
    statistics.evictions = cache_.evictions();
    statistics.cached_bytes = cache_.bytes();
    statistics.cached_files = cache_.files();
    statistics.queued = queued_;
    statistics.running = running_.size();
    return statistics;
}

}  // namespace ZellPictureLoader
