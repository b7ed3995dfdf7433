// Where the user's files belong.
#pragma once

#include <filesystem>

namespace kestrow::user_folders {

// The home folder: HOME, or what the system's user list says where HOME is no absolute path.
std::filesystem::path home();

// A base folder by the XDG rules: the variable's value when it is an absolute path, else `inHome`
// in the home folder.
std::filesystem::path xdg(const char* variable, const char* inHome);

// The folder for data that programs keep for the user.
std::filesystem::path data();

}  // namespace kestrow::user_folders
