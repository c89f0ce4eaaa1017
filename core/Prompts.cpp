#include "core/Prompts.h"

Text deleteLocalFilesPrompt() {
    return u"You have changed the saving mode from ''local files mode''  to  ''use registry mode''.\r"
           u"Current set of memo files KARDEL.HDR, KARDEL.DAT and MEMO will be lost.\r"
           u"\r"
           u"Are you sure you want to delete the local files?";
}

Text useLocalFilesPrompt() {
    return u"Do you want to use the local files 'KARDEL.HDR', 'KARDEL.DAT' and 'MEMO'?\r\r"
           u"For this setting to have effect, the program must be restarted.";
}

Text useRegistryPrompt() {
    return u"For this setting to have effect, the program must be restarted.";
}

Text cannotReadPrompt() {
    return u"The settings or the files of the notes cannot be read at this moment.\r\r"
           u"Nothing has been changed. Please start Kardel again later.";
}

Text damagedFilesPrompt(const std::vector<Text>& names) {
    Text prompt =
        u"The files of the notes were damaged. All notes that could be read are shown.\r\r"
        u"The files as they were found are kept in the program's folder as";
    for (const Text& name : names)
        prompt += u"\r" + name;
    return prompt;
}
