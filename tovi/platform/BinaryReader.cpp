#include "tovi/platform/BinaryReader.h"

#include <algorithm>

#include "tovi/interfaces/Exception.h"

namespace tovi {
namespace {

constexpr std::int64_t endBeforeLength = statusWordCode + 0x6282;
constexpr std::int64_t wrongLength = statusWordCode + 0x6700;
constexpr std::int64_t offsetOutside = statusWordCode + 0x6B00;

}  // namespace

BinaryReader::BinaryReader(ISCardOS& os) : os_(os), most_(std::max<std::size_t>(os.maxRead(), 1)) {}

Blob BinaryReader::read(std::size_t offset, std::size_t length) {
    while (true) {
        try {
            return os_.readBinary(offset, length);
        } catch (const SmartcardException& failure) {
            const std::int64_t code = failure.GetCode();
            if (code == offsetOutside) return {};
            if (code == endBeforeLength && length == 1) return {};
            if ((code != endBeforeLength && code != wrongLength) || length == 1) throw;
        }
        length /= 2;
        most_ = length;
    }
}

}  // namespace tovi
