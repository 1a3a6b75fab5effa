// SPDX-License-Identifier: MIT
// Empty: CMake precompiles headers only for a target that compiles something.
