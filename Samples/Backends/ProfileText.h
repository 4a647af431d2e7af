// ProfileText.h: the text form of a settings file; docs/settings.md describes it.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

class ProfileNode;
struct ProfileValue;

// More is no settings file, whoever wrote it.
constexpr std::size_t maxProfileBytes = 16u << 20;

// UTF-8, all changes included. room: a string that is no longer wanted; its memory is.
std::string FormatProfile(const ProfileNode& root, std::string room = {});

// One value's line in that, with its end.
std::string FormatValue(const ProfileValue& value);

// Null: damaged, or not such a file at all. Nothing in the tree counts as changed.
std::shared_ptr<ProfileNode> ParseProfile(std::string_view bytes);

// Whether FormatProfile made it and nothing is missing at its end.
bool IsWholeProfile(std::string_view bytes);
