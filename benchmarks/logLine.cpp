// A program that logs one line: logLine SETTINGS FOLDER
#include "RkUtilities/logging/CrkLogWriter.h"

int main(int argc, char** argv) {
    if (argc != 3)
        return 1;
    CrkLogWriter::Init(CString(argv[1]), CString(argv[2]));
    CrkLogWriter::Log(CrkLogWriter::LogError, u"Map saved: 4096 topics, 512 relationships, 37 attachments");
}
