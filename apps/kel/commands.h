/// \file
/// The commands of the program `kel`, one function each, called by main.cpp.
#pragma once

struct Program;

// One line per command, in the order that the help shows them.
void addCatalogCommand(Program &program);
void addCheckCommand(Program &program);
void addDemoCommand(Program &program);
void addDoctorCommand(Program &program);
void addMonitorCommand(Program &program);
void addPanelCommand(Program &program);
void addProjectCommand(Program &program);
void addSimCommand(Program &program);
void addTemplateCommand(Program &program);
