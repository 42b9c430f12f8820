#include "cli/portadvice.h"

QString rights_advice(const QString& port)
{
    const QString group = port_group(port);
    const QString owner = group.isEmpty() ? "Ports belong to a group, mostly dialout"
                                          : "It belongs to the group " + group;
    return owner + ": `sudo adduser $USER " + (group.isEmpty() ? "dialout" : group) +
           "`, then log in again.";
}

QString busy_advice(const QVector<PortHolder>& holders)
{
    QStringList programs;
    for (const PortHolder& holder : holders)
        programs.append(shown(holder));
    return programs.isEmpty()
               ? QString("Another program holds it: end that program, or take another port.")
               : "It is open in " + programs.join(", ") + ": end that, or take another port.";
}
