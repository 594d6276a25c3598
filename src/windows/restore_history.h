#pragma once

#include "geometry/rectangle.h"

#include <optional>
#include <unordered_map>
#include <utility>

namespace brisk {

/// Two frames that differ by at most this many points in each of x, y, width and height are the same place.
inline constexpr double frameMatchTolerance = 2.0;

inline bool framesMatch(const CGRect& a, const CGRect& b) {
    return isNear(a, b, frameMatchTolerance);
}

/// Where windows were before the first of a run of layouts. A record counts only while its window sits where it was
/// last put; one found stale is dropped, since the user has moved the window since. Frames are in accessibility
/// coordinates. `Key` needs a std::hash.
template <class Key>
class WindowRestoreHistory {
public:
    struct Record {
        /// The frame from before the first layout of the run.
        CGRect originalFrame;
        /// The frame that the window had right after the latest layout.
        CGRect lastAppliedFrame;
        friend bool operator==(const Record&, const Record&) = default;
    };

    const std::unordered_map<Key, Record>& records() const { return records_; }

    /// The frame to remember as the original one before a window at `currentFrame` is moved. Drops a stale record.
    CGRect originalFrameForApplying(const Key& key, const CGRect& currentFrame) {
        return restoreFrame(key, currentFrame).value_or(currentFrame);
    }

    /// The frame that restoring a window at `currentFrame` should give it; none where there is nothing to restore.
    /// Drops a stale record; a good one stays until the caller has written the frame and removes it.
    std::optional<CGRect> restoreFrame(const Key& key, const CGRect& currentFrame) {
        const auto found = records_.find(key);
        if (found == records_.end()) {
            return std::nullopt;
        }
        if (!framesMatch(found->second.lastAppliedFrame, currentFrame)) {
            records_.erase(found);
            return std::nullopt;
        }
        return found->second.originalFrame;
    }

    void store(const Key& key, const Record& record) { records_.insert_or_assign(key, record); }

    void removeRecord(const Key& key) { records_.erase(key); }

    template <class Predicate>
    void removeRecords(Predicate&& isUnwanted) {
        std::erase_if(records_, [&](const auto& entry) { return isUnwanted(entry.first); });
    }

private:
    std::unordered_map<Key, Record> records_;
};

} // namespace brisk
