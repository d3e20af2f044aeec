// Whether a text is a bfile locator.
#include <services/text.h>

#include <algorithm>
#include <string_view>

namespace embedded {

namespace {

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool is_in_name(char c) { return is_letter(c) || (c >= '0' && c <= '9') || c == '_'; }

bool is_in_file_name(char c) { return c != '\0' && c != '\r' && c != '\n'; }

// DIRECTORY:file, where the file name may have colons of its own.
bool is_locator(std::string_view text)
{
    const size_t colon = text.find(':');
    if (colon == std::string_view::npos)
        return false;
    const std::string_view directory = text.substr(0, colon), file = text.substr(colon + 1);
    return !directory.empty() && is_letter(directory[0]) && std::ranges::all_of(directory, is_in_name) &&
           !file.empty() && std::ranges::all_of(file, is_in_file_name);
}

} // namespace

} // namespace embedded

int32_t utl_is_valid_bfile_str(const char *text, uint32_t *length, int32_t *is_null)
{
    std::string_view locator(text, *length);
    locator = locator.substr(0, locator.find_last_not_of(' ') + 1); // none found: 0
    if (!locator.empty() && !embedded::is_locator(locator))
        return 0;
    *length = uint32_t(locator.size());
    *is_null = locator.empty();
    return 1;
}
