// What the application core needs of the system it runs on.
#pragma once

#include "app/waiting.h"
#include "platform/clock.h"
#include "platform/crash_capture.h"
#include "platform/file_system.h"
#include "platform/instance_port.h"
#include "platform/link_maker.h"
#include "platform/places.h"
#include "platform/processes.h"
#include "platform/text_modules.h"

namespace kelvane {

// All of it outlives the application object.
struct ApplicationPorts {
    FileSystem& files;
    const Places& places;
    const SystemFacts& system;
    const Clock& clock;
    InstancePorts& instances;
    Processes& processes;
    CrashCapture& crashes;
    TextModules& texts;
    LinkMaker& links;
    Waiting& waiting;
};

}  // namespace kelvane
