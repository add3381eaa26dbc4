#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>
#include <limits>
#include <utility>

#include "tovi/coders/EntryWriting.h"
#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {

/// Runs `operation`, and throws `instead` in place of what the card reported: any SmartcardException
/// that carries a status word.
template <class Operation>
auto translateCardErrors(const SmartcardException& instead, Operation operation) {
    constexpr std::uint32_t statusWordMask = 0xFFFF0000;
    try {
        return operation();
    } catch (const SmartcardException& failure) {
        const auto low = static_cast<std::uint32_t>(failure.GetCode());
        if ((low & statusWordMask) != statusWordCode) throw;
        throw instead;
    }
}

/// What writing and updating throw when the card refuses: status word 6A84, marked as one.
inline SmartcardException notEnoughMemory(const char* where) {
    return {"not enough memory", where, statusWordCode + 0x6A84};
}

/// A record number kept in an info, as the lookups take it. One too large for their type names no
/// row either way.
inline unsigned long recordNumberOf(std::uint64_t recordNumber) {
    constexpr unsigned long most = std::numeric_limits<unsigned long>::max();
    return recordNumber > most ? most : static_cast<unsigned long>(recordNumber);
}

/// The position of the first element that `matches`; the size of the list when there is none.
template <class List, class Matches>
std::size_t positionOf(const List& list, Matches matches) {
    return static_cast<std::size_t>(std::find_if(list.begin(), list.end(), matches) - list.begin());
}

template <class List>
auto iteratorAt(List& list, std::size_t position) {
    return std::next(list.begin(), static_cast<std::ptrdiff_t>(position));
}

/// Whether the element stands in the list itself, as what ref...Info gives does.
template <class T>
bool isElementOf(const T& element, const std::vector<T>& list) {
    const std::less<const T*> before;
    return !before(&element, list.data()) && before(&element, list.data() + list.size());
}

/// Adds a record to the directory file, a row to the table and `info` to its list. An `info` of the
/// list itself, which moves, is left as it is.
///
/// All memory is taken before the card is written to, so that card and model cannot part.
template <class T>
unsigned long PKCS15Container::writeInfo(ISCardOS* os, T& info, std::vector<T>& infos,
                                         unsigned char objectType) {
    constexpr const char* HERE = "PKCS15Container::writeInfo";
    return translateCardErrors(notEnoughMemory(HERE), [&] {
        T copy = info;
        const bool isOwn = isElementOf(info, infos);
        makeRoomForOne(fatRecords);
        makeRoomForOne(infos);
        const unsigned long position = encodeInfo(os, copy, noIndex);
        if (position == noIndex) throw SmartcardException("encode info failed", HERE);
        const unsigned long recordNumber = makeFATRecord(objectType, copy.isPrivate);
        copy.recordNumber = recordNumber;
        if (!isOwn) info.recordNumber = recordNumber;
        infos.insert(iteratorAt(infos, position), std::move(copy));
        return recordNumber;
    });
}

/// Rewrites the record that stands at the place of the info with the same record number.
template <class T>
void PKCS15Container::updateInfo(ISCardOS* os, const T& info, std::vector<T>& infos,
                                 unsigned char objectType) {
    constexpr const char* HERE = "PKCS15Container::updateInfo";
    translateCardErrors(notEnoughMemory(HERE), [&] {
        checkObjectType(recordNumberOf(info.recordNumber), objectType, HERE);
        const std::size_t position = positionOf(
            infos, [&](const T& candidate) { return candidate.recordNumber == info.recordNumber; });
        if (position == infos.size()) throw SmartcardException("invalid record number", HERE);
        T copy = info;
        const auto index = static_cast<unsigned long>(position);
        if (encodeInfo(os, info, index) != index)
            throw SmartcardException("encode info failed", HERE);
        infos[position] = std::move(copy);
    });
}

}  // namespace tovi
