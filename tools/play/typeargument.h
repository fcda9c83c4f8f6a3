// Types given on the command line.
#pragma once

#include <string>

/// Reads what the user takes for a type, in any letter case and with blanks where one likes: a name such as `bit`,
/// `std_logic` or `real`, a vector such as `std_logic_vector(7 downto 0)`, an integer such as `integer range 0 to 15`,
/// or a whole type description.
/// @return the type description
/// @throw CRefusal that tells what of the type cannot be read and what would do
std::string ReadTypeArgument(const std::string &text);
