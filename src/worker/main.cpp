// kelvane-worker: takes documents apart for the program that started it. Not meant to be started by hand.
#include "worker/worker_run.h"
#include "worker/worker_tasks.h"

int main(int count, char** words)
{
    return kelvane::runWorker("kelvane-worker", kelvane::makeWorkerPlatform(count, words), kelvane::serveRequests);
}
