#include "App/TalvoApp.h"

int main(int argc, char **argv)
{
    return Talvo::TalvoApp::run(argc, argv, Talvo::TalvoApp::defaultSetup());
}
