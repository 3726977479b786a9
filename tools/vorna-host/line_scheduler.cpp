#include "line_scheduler.h"

#include <algorithm>
#include <climits>

namespace vorna_host {

namespace {

// Messages that name no camera, or cannot be read, share one queue and keep
// the order they came in.
constexpr int kNoCamera = INT_MIN;

bool SetsMotion(MessageKind kind) { return kind == MessageKind::kMotion || kind == MessageKind::kStop; }

}  // namespace

MessageClass LineScheduler::Classify(const std::string& bytes) const {
    if (keepLineOrder_) return MessageClass{kNoCamera, MessageKind::kOther};
    MessageClass found = classify_(bytes);
    if (found.kind == MessageKind::kUnknown || found.camera < 0) return MessageClass{kNoCamera, MessageKind::kOther};
    return found;
}

uint64_t LineScheduler::Add(std::string bytes, std::chrono::steady_clock::time_point handedOver) {
    const MessageClass found = Classify(bytes);
    const uint64_t arrival = ++arrivals_;
    WaitingMessage message{std::move(bytes), handedOver, arrival};
    CameraQueue& queue = cameras_[found.camera];
    if (SetsMotion(found.kind) && ReplaceWaitingMotion(queue, message, found)) return arrival;
    queue.push_back(Entry{std::move(message), found.kind, found.axes, ++turns_});
    ++waiting_;
    return arrival;
}

bool LineScheduler::ReplaceWaitingMotion(CameraQueue& queue, WaitingMessage& message, const MessageClass& found) {
    const auto overtaken = [&found](const Entry& entry) {
        return SetsMotion(entry.kind) && entry.axes != 0 && found.axes != 0 && (entry.axes & ~found.axes) == 0;
    };
    const auto first = std::find_if(queue.begin(), queue.end(), overtaken);
    if (first == queue.end()) return false;
    *first = Entry{std::move(message), found.kind, found.axes, first->turn};
    const auto kept = std::remove_if(first + 1, queue.end(), overtaken);
    const size_t dropped = static_cast<size_t>(queue.end() - kept);
    queue.erase(kept, queue.end());
    waiting_ -= dropped;
    replaced_ += 1 + dropped;
    return true;
}

uint64_t LineScheduler::OldestArrival() const {
    uint64_t oldest = UINT64_MAX;
    for (const auto& camera : cameras_)
        for (const Entry& entry : camera.second) oldest = std::min(oldest, entry.message.arrival);
    return oldest;
}

LineScheduler::CameraQueue* LineScheduler::NextCamera() {
    CameraQueue* next = nullptr;
    bool nextStops = false;
    for (auto& camera : cameras_) {
        CameraQueue& queue = camera.second;
        if (queue.empty()) continue;
        const bool stops = std::any_of(queue.begin(), queue.end(),
                                       [](const Entry& entry) { return entry.kind == MessageKind::kStop; });
        const bool earlier = next == nullptr || queue.front().turn < next->front().turn;
        if ((stops && !nextStops) || (stops == nextStops && earlier)) {
            next = &queue;
            nextStops = stops;
        }
    }
    return next;
}

WaitingMessage LineScheduler::TakeNext() {
    CameraQueue& queue = *NextCamera();
    WaitingMessage message = std::move(queue.front().message);
    queue.pop_front();
    --waiting_;
    return message;
}

}  // namespace vorna_host
