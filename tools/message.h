// Lines on standard error.
#pragma once

#include <string>
#include <string_view>

/// Writes "tesk: TEXT", why something is refused, as one line. On a terminal the word in front is coloured.
void TellRefusal(std::string_view text);

/// Writes "tesk: warning: TEXT" alike.
void TellWarning(std::string_view text);

/// Has these lines name a file otherwise, from now on: what stands for a pipe has a path that says nothing to a user.
void ShowPathAs(const std::string &path, const std::string &shown);
