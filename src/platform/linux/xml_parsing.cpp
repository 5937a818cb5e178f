#include "platform/xml_parsing.h"

#include <pugixml.hpp>
#include <vector>

#include "platform/linux/adapters.h"

namespace kelvane {
namespace linux_os {
namespace {

// The tree takes up to twenty times the bytes of a document made of nothing but tags.
constexpr std::size_t longestDocument = std::size_t{64} * 1024 * 1024;

// Predefined entities and character references only: what a document type declares is read over. White space between
// tags counts, since a blank between two runs of text is text.
constexpr unsigned options = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol | pugi::parse_wconv_attribute |
                             pugi::parse_ws_pcdata | pugi::parse_embed_pcdata;

// Goes through the tree along its own links: nesting costs no stack. The library builds and frees trees without
// recursion as well.
class TreeWalk {
public:
    explicit TreeWalk(XmlHandler& handler) : handler_(handler) {}

    // False when the handler has had enough.
    bool run(const pugi::xml_document& document)
    {
        pugi::xml_node node = document.first_child();
        while (node) {
            if (!enter(node))
                return false;
            if (const pugi::xml_node child = node.first_child()) {
                node = child;
                continue;
            }
            if (!leave(node))
                return false;
            while (!node.next_sibling()) {
                node = node.parent();
                if (node == document)
                    return true;
                if (!leave(node))
                    return false;
            }
            node = node.next_sibling();
        }
        return true;
    }

private:
    bool enter(const pugi::xml_node& node)
    {
        switch (node.type()) {
        case pugi::node_element:
            attributes_.clear();
            for (const pugi::xml_attribute attribute : node.attributes())
                attributes_.emplace_back(attribute.name(), attribute.value());
            return handler_.elementBegins(node.name(), attributes_) &&
                   characters(node);  // the leading text is embedded
        case pugi::node_pcdata:
        case pugi::node_cdata:
            return characters(node);
        default:
            return true;
        }
    }

    bool characters(const pugi::xml_node& node)
    {
        const std::string_view text = node.value();
        return text.empty() || handler_.characters(text);
    }

    bool leave(const pugi::xml_node& node)
    {
        return node.type() != pugi::node_element || handler_.elementEnds(node.name());
    }

    XmlHandler& handler_;
    std::vector<XmlHandler::Attribute> attributes_;
};

class PugixmlParsing final : public XmlParsing {
public:
    Status parse(std::span<const std::byte> bytes, XmlHandler& handler) override
    {
        if (bytes.size() > longestDocument)
            return Error{ErrorKind::invalid, 0, "the XML document is too long"};
        pugi::xml_document document;
        const pugi::xml_parse_result result = document.load_buffer(bytes.data(), bytes.size(), options);
        if (!TreeWalk(handler).run(document) || result)
            return {};
        return Error{ErrorKind::invalid, 0, result.description()};
    }
};

}  // namespace
}  // namespace linux_os

std::unique_ptr<XmlParsing> makePugixmlParsing()
{
    return std::make_unique<linux_os::PugixmlParsing>();
}

}  // namespace kelvane
