#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tests/support/Der.h"
#include "tovi/card/VirtualCard.h"

/// Directory files of a virtual card in every shape that cards have them in.
namespace tovi::test {

enum class FileShape { filledWith00, filledWithFF, linearVariable, linearFixed };
inline constexpr FileShape fileShapes[] = {FileShape::filledWith00, FileShape::filledWithFF,
                                           FileShape::linearVariable, FileShape::linearFixed};

bool isLinear(FileShape shape);
std::string nameOf(FileShape shape);

/// The usual size of the records of a fixed linear file, and the most of a variable one.
inline constexpr std::size_t linearRecordSize = 250;

/// Adds a file at an absolute path that holds `records` and has room for more: octets of padding,
/// or records, which a fixed linear file has from the beginning, all 00.
void addDirectoryFile(VirtualCard& card, const Blob& path, FileShape shape,
                      const std::vector<Blob>& records, std::size_t room,
                      std::size_t recordSize = linearRecordSize);

/// What keeps the file from being compact; empty when it holds `records` one behind the other from
/// the first octet on, then its padding; when linear, `records` in this order, free ones between.
std::string looseness(const VirtualCard& card, const Blob& path, FileShape shape,
                      const std::vector<Blob>& records);

}  // namespace tovi::test
