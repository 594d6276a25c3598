// Plays the program on a display of its own: real clients, real key presses and mouse drags. Prints a table of the
// frames that the commands gave beside those that they must give, leaves pictures of everything that there is to see,
// and ends with status 0 only if every frame was right and every window came up.

#include "tour/scenes.h"

#include <QCoreApplication>

#include <cstdlib>
#include <exception>
#include <iostream>

namespace {

using namespace brisk::tour;

bool play(const std::string& program, const std::string& folder) {
    Stage stage(folder);
    bool isRunningAtTheEnd = true;
    for (const Brisk::Look look : {Brisk::Look::light, Brisk::Look::dark}) {
        {
            Brisk brisk(stage, program, {}, look);
            playGuide(stage, brisk);
        }
        Brisk brisk(stage, program, settings, look);
        if (look == Brisk::Look::light) {
            playCommands(stage);
            playMenu(stage, brisk);
            playDrag(stage, brisk);
        }
        playSettings(stage, brisk);
        playEditor(stage, brisk);
        if (!brisk.isRunning()) {
            std::cout << "Brisk ended on the way\n" << brisk.errors();
            isRunningAtTheEnd = false;
        }
    }
    std::cout << stage.frameCount() - stage.wrongFrameCount() << " of " << stage.frameCount()
              << " frames right; pictures in " << folder << std::endl;
    return stage.wrongFrameCount() == 0 && isRunningAtTheEnd;
}

} // namespace

int main(int argc, char** argv) {
    // For the message bus over which controls are found.
    const QCoreApplication application(argc, argv);
    if (argc != 3) {
        std::cerr << "usage: brisk_tour <program> <folder for pictures>\n";
        return EXIT_FAILURE;
    }
    try {
        return play(argv[1], argv[2]) ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& failure) {
        std::cerr << "brisk_tour: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
}
