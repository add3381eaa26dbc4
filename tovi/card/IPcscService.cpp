#include "tovi/card/IPcscService.h"

#include <thread>

namespace tovi {

std::chrono::steady_clock::time_point IPcscService::now() const {
    return std::chrono::steady_clock::now();
}

void IPcscService::sleep(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

}  // namespace tovi
