#include <cstdio>

int main()
{
    std::puts("kelvane-cli: no verb is built yet");
    return 2;
}
