// Only there to have the test headers compiled once, see tests/CMakeLists.txt.
