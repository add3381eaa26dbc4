#include "tovi/card/PcscReaders.h"

#include <algorithm>

#include "tovi/card/PcscError.h"

namespace tovi {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds slice{200};  // of a wait, between two calls of Idle
constexpr milliseconds atOnce{0};

PcscReader toReader(const PcscReaderState& row) {
    using State = PcscReader::State;
    const auto has = [&](std::uint32_t bits) { return (row.state & bits) != 0; };
    PcscReader reader{row.reader};
    reader.atr = row.atr;
    reader.events = static_cast<std::uint16_t>(row.state >> 16);
    if (!has(PcscState::present)) return reader;
    const bool isUsed = has(PcscState::inUse | PcscState::exclusive);
    reader.state = has(PcscState::mute) ? State::mute : isUsed ? State::inUse : State::present;
    return reader;
}

std::string quoted(std::string_view name) { return "'" + std::string(name) + "'"; }

std::string quoted(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) text += (text.empty() ? "" : ", ") + quoted(name);
    return text;
}

/// True when plugging in a reader may help.
bool isMissing(const PcscError& error) {
    const std::string_view message = error.GetMessage();
    return message == "no PC/SC reader" || message == "reader not found";
}

}  // namespace

PcscReaders::PcscReaders(IPcscService& service) : service_(service) {
    const auto code = service_.establish();
    if (code != PcscCode::success) throw PcscError::of(code, "PcscReaders::PcscReaders", "");
}

PcscReaders::~PcscReaders() { service_.release(); }

std::vector<std::string> PcscReaders::names() {
    std::vector<std::string> names;
    const auto code = service_.listReaders(names);
    if (code == PcscCode::noReaders) return {};
    if (code != PcscCode::success) throw PcscError::of(code, "PcscReaders::list", "");
    return names;
}

std::vector<PcscReader> PcscReaders::list() {
    std::vector<PcscReader> readers;
    for (const std::string& name : names()) {
        try {
            readers.push_back(toReader(stateOf(name, 0, atOnce)));
        } catch (const PcscError& error) {
            if (!isMissing(error)) throw;  // else it was unplugged just now
        }
    }
    return readers;
}

std::string PcscReaders::nameWith(std::string_view part) {
    constexpr const char* operation = "PcscReaders::find";
    const std::vector<std::string> all = names();
    if (all.empty()) throw PcscError("no PC/SC reader", operation, "none is attached");
    if (std::find(all.begin(), all.end(), part) != all.end()) return std::string(part);
    std::vector<std::string> found;
    std::copy_if(all.begin(), all.end(), std::back_inserter(found),
                 [&](const std::string& name) { return name.find(part) != std::string::npos; });
    if (found.empty()) {
        throw PcscError("reader not found", operation,
                        "no name has " + quoted(part) + "; readers are " + quoted(all));
    }
    if (found.size() > 1) {
        throw PcscError("reader name not unique", operation,
                        quoted(part) + " may be " + quoted(found));
    }
    return found.front();
}

PcscReaderState PcscReaders::stateOf(const std::string& name, std::uint32_t known,
                                     milliseconds patience) {
    PcscReaderState row{name, known, known};
    const auto code = service_.getStatusChange(patience, std::span(&row, 1));
    if (code != PcscCode::success && code != PcscCode::timeout) {
        throw PcscError::of(code, "PcscReaders::stateOf", "reader " + quoted(name));
    }
    return row;
}

PcscReader PcscReaders::find(std::string_view part) {
    return toReader(stateOf(nameWith(part), 0, atOnce));
}

PcscReader PcscReaders::waitForCard(std::string_view part, Patience patience, const Idle& idle) {
    const auto start = service_.now();
    for (;;) {
        if (idle) idle();
        const auto waited = std::chrono::duration_cast<milliseconds>(service_.now() - start);
        const milliseconds rest = patience ? std::min(slice, *patience - waited) : slice;
        try {
            const PcscReaderState row = stateOf(nameWith(part), 0, atOnce);
            if (toReader(row).hasCard()) return toReader(row);
            if (rest <= atOnce) {
                throw PcscError("no card in the reader", "PcscReaders::waitForCard",
                                "reader " + quoted(row.reader));
            }
            stateOf(row.reader, row.state & ~PcscState::changed, rest);
        } catch (const PcscError& error) {
            if (!isMissing(error) || rest <= atOnce) throw;
            service_.sleep(rest);
        }
    }
}

}  // namespace tovi
