#include "tests/abi/header_text.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace bcast::test {

namespace {

// What stands between semicolons, without comments and preprocessor lines.
std::vector<std::string> declarations(const std::filesystem::path &header)
{
    std::ifstream file(header);
    if (!file)
        throw std::runtime_error("cannot read " + header.string());
    std::string code;
    for (std::string line; std::getline(file, line);)
        if (!line.starts_with('#'))
            code += line + '\n';
    for (size_t open; (open = code.find("/*")) != std::string::npos;)
        code.erase(open, code.find("*/", open) + 2 - open);
    std::vector<std::string> all;
    std::istringstream text(code);
    for (std::string declaration; std::getline(text, declaration, ';');)
        all.push_back(declaration);
    return all;
}

std::vector<std::string> words(std::string text)
{
    std::ranges::replace_if(
        text, [](char c) { return c != '_' && !std::isalnum(static_cast<unsigned char>(c)); }, ' ');
    std::istringstream in(text);
    std::vector<std::string> all;
    for (std::string word; in >> word;)
        all.push_back(word);
    return all;
}

} // namespace

std::vector<std::string> casts_of_public_header()
{
    std::vector<std::string> names;
    for (const std::string &declaration : declarations(BCAST_SOURCE_DIR "/include/bcast/casts.h")) {
        const std::vector<std::string> all = words(declaration);
        if (!all.empty() && all[0].starts_with("bcast_") && all[0].ends_with("_fn"))
            names.insert(names.end(), all.begin() + 1, all.end());
    }
    return names;
}

std::vector<std::string> services_of_headers()
{
    std::vector<std::string> names;
    for (const auto &header : std::filesystem::directory_iterator(BCAST_SOURCE_DIR "/services")) {
        if (header.path().extension() != ".h")
            continue;
        for (const std::string &declaration : declarations(header.path()))
            if (const size_t open = declaration.find('('); open != std::string::npos)
                names.push_back(words(declaration.substr(0, open)).back());
    }
    return names;
}

} // namespace bcast::test
