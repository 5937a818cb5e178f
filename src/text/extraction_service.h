// Texts of files on disk and of entries of archives: plain text in this process, everything else in workers.
#pragma once

#include <memory>

#include "platform/filter_programs.h"
#include "platform/packaged_files.h"
#include "platform/shell_namespace.h"
#include "platform/text_decoding.h"
#include "platform/worker_processes.h"
#include "platform/xml_parsing.h"
#include "text/other_texts.h"
#include "text/text_extraction.h"

namespace kelvane {

// Outlive the service. xml, packages and filters serve this process only where no worker is used.
struct ExtractionPorts {
    ShellNamespace& shell;
    WorkerProcesses& workers;
    const TextDecoding& decoding;
    XmlParsing& xml;
    PackagedFiles& packages;
    FilterPrograms& filters;
    OtherTexts* others = nullptr;  // asked last, about files of no known format; null: nobody is
};

// Where workers were asked for and none can be started, nothing but plain text is extracted (outcome toolMissing names
// the worker): what may be hostile is not taken into this process behind a person's back.
[[nodiscard]] std::unique_ptr<TextExtraction> makeTextExtraction(const ExtractionPorts& ports,
                                                                 ExtractionOptions options);

}  // namespace kelvane
