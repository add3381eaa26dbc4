#include "tools/ProgressBar.h"

#include <fmt/format.h>

#include <ostream>

namespace tovi {
namespace {

constexpr std::size_t columns = 40;

}  // namespace

ProgressBar::ProgressBar(std::ostream& out, std::size_t total, bool isShown)
    : out_(out), total_(total), isShown_(isShown && total > 0) {}

ProgressBar::~ProgressBar() { hide(); }

void ProgressBar::show(std::size_t done) {
    if (!isShown_) return;
    const std::size_t promille = done * 1000 / total_;
    if (promille == promille_ && width_ > 0) return;
    promille_ = promille;
    const std::size_t full = done * columns / total_;
    const std::string line = fmt::format("[{}{}] {}/{}", std::string(full, '#'),
                                         std::string(columns - full, '.'), done, total_);
    width_ = line.size();
    out_ << '\r' << line << std::flush;
}

void ProgressBar::hide() {
    if (width_ > 0) out_ << '\r' << std::string(width_, ' ') << '\r' << std::flush;
    width_ = 0;
}

}  // namespace tovi
