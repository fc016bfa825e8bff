#pragma once

// What other users of the system see of this program in the list of processes.
namespace process_title
{
// Overwrites, in the arguments themselves, the passwords and what stands in front of an address's last '@'. To be called
// first, with the arguments copied: until then they can be seen. Misspelled options stay visible until the program ends,
// which it then does at once.
void hideSecrets(int argc, char** argv);
} // namespace process_title
