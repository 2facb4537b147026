#include "clip/output_folder.h"
#include "clip/program.h"
#include "figures/figures.h"

#include <iostream>
#include <string>

int main(int argumentCount, char ** arguments)
{
    return clip::RunProgram("figures", std::cout, std::cerr,
                            [&]
                            {
                                if (argumentCount != 2)
                                {
                                    throw clip::RequestError("usage: figures FOLDER");
                                }
                                clip::OutputFolder folder(arguments[1]);
                                for (figures::Figure const & figure : figures::k_Figures)
                                {
                                    folder.Write(std::string(figure.fileName),
                                                 [&figure](std::ostream & stream) { figure.draw().Write(stream); });
                                }
                                folder.Publish();
                            });
}
