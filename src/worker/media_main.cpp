// kelvane-media-worker: decodes sound, films and pictures for the program that started it. Not meant to be started by
// hand.
#include "worker/media_tasks.h"
#include "worker/worker_run.h"

int main(int count, char** words)
{
    return kelvane::runWorker("kelvane-media-worker", kelvane::makeMediaWorkerPlatform(count, words),
                              kelvane::serveMediaRequests);
}
