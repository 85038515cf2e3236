#include "StopCommand.h"

#include "CliOptions.h"
#include "OrvelBus.h"

#include <ostream>

namespace orvel::cli::StopCommand {

std::string help()
{
    return usage("stop",
                 "Açık olan Orvel'in çaldığı vakit sesini hemen susturur. Bir kısayol tuşuna ya da panel\n"
                 "düğmesine bağlanabilir. Orvel açık değilse 1 ile çıkar.",
                 OptionTable());
}

int run(const std::vector<std::string> &args, const Clock &, std::ostream &, std::ostream &err)
{
    OptionTable().parse(args);
    if (!OrvelBus::call("StopSound")) {
        err << "orvel-cli: Orvel açık değil; susturulacak ses yok\n";
        return 1;
    }
    return 0;
}

} // namespace orvel::cli::StopCommand
