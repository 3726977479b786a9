#include "core/camera_table.h"

#include <utility>

namespace vorna {

CameraKey KeyOf(const PtzCamera& camera) {
    return CameraKey{camera.devicesId, camera.deviceNumber, camera.inputNumber};
}

size_t CameraKeyHash::operator()(const CameraKey& key) const {
    // The three numbers are mixed so that keys differing in one number only
    // (the usual case: inputs of one device) spread over the buckets.
    uint64_t hash = static_cast<uint32_t>(key.devicesId);
    hash = hash * 0x9E3779B97F4A7C15ULL + static_cast<uint32_t>(key.deviceNumber);
    hash = hash * 0x9E3779B97F4A7C15ULL + static_cast<uint32_t>(key.inputNumber);
    hash ^= hash >> 29;
    hash *= 0xBF58476D1CE4E5B9ULL;
    hash ^= hash >> 32;
    return static_cast<size_t>(hash);
}

PtzCamera* CameraTable::Find(const CameraKey& key) const {
    auto slot = index_.find(key);
    return slot == index_.end() ? nullptr : slot->second.first->get();
}

PtzCamera& CameraTable::Append(std::unique_ptr<PtzCamera> camera) {
    const CameraKey key = KeyOf(*camera);
    const iterator position = cameras_.insert(cameras_.end(), std::move(camera));
    auto slot = index_.try_emplace(key, Slot{position, 0}).first;
    ++slot->second.count;
    return **position;
}

void CameraTable::Remove(const CameraKey& key) {
    auto slot = index_.find(key);
    if (slot != index_.end()) Erase(slot->second.first);
}

CameraTable::iterator CameraTable::Erase(iterator position) {
    const CameraKey key = KeyOf(**position);
    auto slot = index_.find(key);
    if (--slot->second.count == 0) {
        index_.erase(slot);
    } else if (slot->second.first == position) {
        // Another camera carries the same key further down the table; it
        // becomes the first.
        iterator next = std::next(position);
        while (!(KeyOf(**next) == key)) ++next;
        slot->second.first = next;
    }
    return cameras_.erase(position);
}

}  // namespace vorna
