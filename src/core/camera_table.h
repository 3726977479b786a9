// The controller's camera table: cameras in the order the configuration
// created them (the order in which the worker steps them and the writer
// emits them), with a hash index on their three keys so that finding the
// camera an event or an update addresses takes the same time at any size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <unordered_map>

#include "core/ptz_camera.h"

namespace vorna {

// The triple that addresses a camera: `Devices` `ID`, `Device` `Number`,
// `Input` `Number`.
struct CameraKey {
    int devicesId;
    int deviceNumber;
    int inputNumber;

    bool operator==(const CameraKey& other) const {
        return devicesId == other.devicesId && deviceNumber == other.deviceNumber &&
               inputNumber == other.inputNumber;
    }
};

CameraKey KeyOf(const PtzCamera& camera);

struct CameraKeyHash {
    size_t operator()(const CameraKey& key) const;
};

class CameraTable {
public:
    using Storage = std::list<std::unique_ptr<PtzCamera>>;
    using iterator = Storage::iterator;
    using const_iterator = Storage::const_iterator;

    iterator begin() { return cameras_.begin(); }
    iterator end() { return cameras_.end(); }
    const_iterator begin() const { return cameras_.begin(); }
    const_iterator end() const { return cameras_.end(); }
    size_t size() const { return cameras_.size(); }
    bool empty() const { return cameras_.empty(); }
    PtzCamera& front() const { return *cameras_.front(); }
    PtzCamera& back() const { return *cameras_.back(); }

    // The first camera with `key` in table order, or null.
    PtzCamera* Find(const CameraKey& key) const;

    // Appends `camera` at the end of the table under the keys it carries; the
    // keys must not change while it is in the table.
    PtzCamera& Append(std::unique_ptr<PtzCamera> camera);

    // Destroys the first camera with `key`, if there is one.
    void Remove(const CameraKey& key);

    // Destroys the camera at `position`; returns the position after it.
    iterator Erase(iterator position);

private:
    // Where the first camera with a key stands, and how many carry it.
    struct Slot {
        iterator first;
        size_t count;
    };

    Storage cameras_;
    std::unordered_map<CameraKey, Slot, CameraKeyHash> index_;
};

}  // namespace vorna
