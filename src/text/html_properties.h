// What a page says of itself in its head, as properties.
#pragma once

#include <string_view>

#include "text/document_sink.h"

namespace kelvane {

void putPageTitle(std::u16string_view title, DocumentSink& sink);
// Of a meta element: authors, description, keywords, dates, also in the names of the Dublin Core.
void putMetaProperty(std::u16string_view attributes, DocumentSink& sink);
void putPageLanguage(std::u16string_view attributes, DocumentSink& sink);

}  // namespace kelvane
