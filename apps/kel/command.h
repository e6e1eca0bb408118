/// \file
/// What a command of the program `kel` is made of. Each command lives in a file of its own, which
/// offers one function that adds it to the command line; main.cpp lists these functions.
#pragma once

#include <CLI/CLI.hpp>
#include <QString>

#include <functional>
#include <stdexcept>

/// A failure that the user can mend: one line that says what is wrong with what. Ends the program
/// with exit status 1.
class CommandError : public std::runtime_error
{
public:
    explicit CommandError(const QString &line)
        : std::runtime_error(line.toStdString())
    {
    }
};

/// Like CommandError, from a command whose exit status 1 has another meaning: ends with status 2.
class UnusableInput : public CommandError
{
public:
    using CommandError::CommandError;
};

/// The program's command line while it is put together and after it was read.
struct Program {
    int argc = 0;                ///< As `main` got it; a QApplication keeps a reference to it.
    char **argv = nullptr;       ///< As `main` got it.
    CLI::App line;               ///< Commands add themselves here.
    std::function<int()> chosen; ///< Set by the chosen command's callback; returns the exit status.
};
