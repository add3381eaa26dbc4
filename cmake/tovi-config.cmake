include(${CMAKE_CURRENT_LIST_DIR}/tovi-targets.cmake)
