#pragma once

#include <cstddef>
#include <iosfwd>

namespace tovi {

/// How far a long piece of work has come, in one line of a terminal that is gone at the end.
class ProgressBar {
public:
    /// `out` must outlive this object. Without `isShown` nothing is written.
    ProgressBar(std::ostream& out, std::size_t total, bool isShown);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// So many of all are done. Writes only when the line changes.
    void show(std::size_t done);
    /// Takes the line away, so that others may write; the next show() brings it back.
    void hide();

private:
    std::ostream& out_;
    std::size_t total_;
    bool isShown_;
    std::size_t width_ = 0;  // columns of the line there is now
    std::size_t promille_ = ~std::size_t{0};
};

}  // namespace tovi
