#include "platform/error_text.hpp"

#include <cerrno>
#include <system_error>

namespace ferrowen::platform {

std::string error_text(unsigned long code) { return std::generic_category().message(static_cast<int>(code)); }

std::string last_error_text() { return error_text(static_cast<unsigned long>(errno)); }

}  // namespace ferrowen::platform
