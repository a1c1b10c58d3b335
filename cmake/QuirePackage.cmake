# What `cmake --install` leaves behind: the CMake package Quire.
