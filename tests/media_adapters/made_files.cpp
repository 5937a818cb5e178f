#include "media_adapters/made_files.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <stdexcept>

#include "base/utf.h"
#include "platform/property_table.h"
#include "props/value_convert.h"
#include "support/bytes_file.h"
#include "support/temp_tree.h"

namespace kelvane::testing {
namespace {

void replaceWord(std::string& command, std::string_view word, const std::string& by)
{
    for (auto at = command.find(word); at != std::string::npos; at = command.find(word, at + by.size()))
        command.replace(at, word.size(), by);
}

void expectPublishedType(const NamedValue& fact)
{
    static const auto properties = makePropertyTable();
    const PropertyInfo* property = properties->byName(fact.name);
    ASSERT_NE(property, nullptr) << fact.name;
    EXPECT_EQ(fact.value.type, property->type) << fact.name;
    EXPECT_EQ(fact.value.isVector, property->multiple) << fact.name;
    EXPECT_FALSE(formatRaw(fact.value).empty()) << fact.name;
}

}  // namespace

std::string madeBy(std::string command, std::string_view outputName, std::string_view input)
{
    const TempTree tree;
    replaceWord(command, "OUT", "'" + tree.path(outputName).string() + "'");
    replaceWord(command, "IN", "'" + tree.write("in/file", input).string() + "'");
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error("failed: " + command);
    return tree.read(outputName);
}

std::map<std::string, std::string> shown(const std::vector<NamedValue>& facts)
{
    std::map<std::string, std::string> values;
    for (const NamedValue& fact : facts) {
        expectPublishedType(fact);
        EXPECT_TRUE(values.emplace(fact.name, toUtf8(formatRaw(fact.value))).second) << fact.name;
    }
    return values;
}

std::map<std::string, std::string> factsOf(FactReading& reader, const std::string& bytes, std::string_view fileName)
{
    BytesFile file(bytes);
    return shown(reader.read(file, fileName));
}

}  // namespace kelvane::testing
