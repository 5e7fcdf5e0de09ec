// InputError.h: an input file that cannot be taken as it stands.
//
// Lines and columns count from 1; line 0 means the whole file, column 0 the whole line. what() gives
// "file:line:column: message" with the parts that are known; the message says what was found and what was expected.

#ifndef INPUTERROR_H
#define INPUTERROR_H

#include <stdexcept>
#include <string>
#include <utility>

namespace voz::workbench
{

class InputError : public std::runtime_error
{
public:
    InputError(std::string i_file, int i_line, int i_column, std::string i_message)
        : std::runtime_error(place(i_file, i_line, i_column) + ": " + i_message), mFile(std::move(i_file)),
          mMessage(std::move(i_message)), mLine(i_line), mColumn(i_column)
    {
    }

    std::string const & File() const { return mFile; }
    int Line() const { return mLine; }
    int Column() const { return mColumn; }
    std::string const & Message() const { return mMessage; } // without the place

private:
    static std::string place(std::string const & file, int line, int column)
    {
        if (line <= 0)
            return file;
        std::string const upToLine = file + ":" + std::to_string(line);
        return column > 0 ? upToLine + ":" + std::to_string(column) : upToLine;
    }

    std::string mFile;
    std::string mMessage;
    int mLine;
    int mColumn;
};

} // namespace voz::workbench

#endif
