// Messages of the common-syntax assembler are built from parts with JoinText.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

// The parts written one after the other.
std::string JoinText(std::initializer_list<std::string_view> parts);
