// The command poll: the front end is heard while the search thinks.
#pragma once

// Looks at the waiting lines and treats each as its row of the command table says; a line without a
// row waits. True: the search must stop.
bool PollCommands();
