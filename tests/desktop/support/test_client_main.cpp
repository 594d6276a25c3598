// An application of plain windows, described on its command line, which prints their ids and ends when one of them is
// asked to close.

#include "desktop/support/test_window.h"

#include <poll.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <span>
#include <vector>

int main(int argc, char** argv) {
    using namespace brisk::desktop;
    const char* display = std::getenv("DISPLAY");
    TestClient client(display == nullptr ? "" : display);
    std::vector<xcb_window_t> windows;
    for (const WindowDescription& description :
         windowsFromArguments(std::span(argv, static_cast<std::size_t>(argc)).subspan(1))) {
        windows.push_back(client.open(description));
        std::cout << windows.back() << std::endl;
    }
    pollfd events{.fd = xcb_get_file_descriptor(client.connection().xcb()), .events = POLLIN, .revents = 0};
    while (client.dispatchEvents() && std::none_of(windows.begin(), windows.end(), [&client](xcb_window_t window) {
               return client.record(window).isCloseRequested;
           })) {
        poll(&events, 1, -1);
    }
    return 0;
}
