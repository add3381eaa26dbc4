#pragma once

#include <cstdlib>
#include <iostream>

/// Ends the program unless `condition` holds.
#define EXPECT(condition)                                                        \
    do {                                                                         \
        if (!(condition)) {                                                      \
            std::cerr << __FILE__ << ':' << __LINE__ << ": " #condition << '\n'; \
            std::exit(1);                                                        \
        }                                                                        \
    } while (false)

void testOwnCard();
