#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "tovi/interfaces/Blob.h"
#include "tovi/platform/RecordChange.h"

namespace tovi {

/// Where the records of a transparent directory file stand and where they are to stand: one behind
/// the other from the first octet on, with padding behind them.
struct FileLayout {
    /// A record, or a place for one.
    struct Item {
        std::size_t at = 0;      ///< where it stands
        std::size_t length = 0;  ///< octets that it takes there; 0 when it is not on the card
        std::size_t target = 0;  ///< where it is to stand
        ASN1::View octets;       ///< what is to stand there; none when it is removed
        bool isPlaced = false;   ///< it stands where and as it is to stand

        std::size_t end() const { return at + length; }
        std::size_t targetEnd() const { return target + octets.size(); }
    };

    std::vector<Item> items;
    std::size_t changed = 0;  ///< the item that `change` is about; items.size(): none
    std::size_t end = 0;      ///< octets of all records as they are to stand
    std::size_t oldEnd = 0;   ///< where the last record ends now
    /// Records may stand before this offset: the size of the file, or where a broken record begins.
    /// That one stays where it is: with other octets in front of its end it would be another
    /// record.
    std::size_t limit = 0;
    bool isWalled = false;  ///< such a record stands at `limit`
    /// The file is compact, and stays so with all records where they are.
    bool keepsPlaces = false;
    std::uint8_t fill = 0;              ///< the value of padding in this file
    std::vector<std::uint8_t> cleared;  ///< the file without erased and stale octets at its end
    std::vector<std::uint8_t> target;   ///< the file as it is to be

    /// None when the file has no room. `file` must outlive the layout.
    static std::optional<FileLayout> of(ASN1::View file, const RecordChange& change);
};

}  // namespace tovi
