# fish completion for orvel-cli

set -l commands times status places imsakiye days qibla ics stop
complete -c orvel-cli -f
complete -c orvel-cli -n "not __fish_seen_subcommand_from $commands" -a times -d 'namaz vakitleri'
complete -c orvel-cli -n "not __fish_seen_subcommand_from $commands" -a status -d 'sıradaki vakit ve kalan süre'
complete -c orvel-cli -n "not __fish_seen_subcommand_from $commands" -a places -d 'yer ara ve seç'
complete -c orvel-cli -n "not __fish_seen_subcommand_from $commands" -a imsakiye -d 'imsakiye'
complete -c orvel-cli -n "not __fish_seen_subcommand_from $commands" -a days -d 'dini günler'
complete -c orvel-cli -n "not __fish_seen_subcommand_from $commands" -a qibla -d 'kıble'
complete -c orvel-cli -n "not __fish_seen_subcommand_from $commands" -a ics -d 'takvim dosyası'
complete -c orvel-cli -n "not __fish_seen_subcommand_from $commands" -a stop -d 'çalan sesi sustur'
complete -c orvel-cli -l help -d 'yardım'
complete -c orvel-cli -n "not __fish_seen_subcommand_from $commands" -l version -d 'sürüm'

set -l timed times status imsakiye qibla ics
set -l sourced times status imsakiye ics
complete -c orvel-cli -n "__fish_seen_subcommand_from $timed" -l lat -x -d 'enlem'
complete -c orvel-cli -n "__fish_seen_subcommand_from $timed" -l lon -x -d 'boylam'
complete -c orvel-cli -n "__fish_seen_subcommand_from $timed" -l tz -x -d 'IANA saat dilimi'
complete -c orvel-cli -n "__fish_seen_subcommand_from $timed" -l name -x -d 'yerin gösterilen adı'
complete -c orvel-cli -n "__fish_seen_subcommand_from $timed" -l method -x -a 'diyanet mwl isna egypt ummAlQura' -d 'hesaplama yöntemi'
complete -c orvel-cli -n "__fish_seen_subcommand_from $sourced" -l service -x -d 'web servisinin kök adresi'
complete -c orvel-cli -n "__fish_seen_subcommand_from $sourced" -l cache -r -a '(__fish_complete_directories)' -d 'önbellek klasörü'
complete -c orvel-cli -n "__fish_seen_subcommand_from $sourced" -l offline -d 'cihazda hesapla'

complete -c orvel-cli -n '__fish_seen_subcommand_from times ics' -l date -x -d 'ilk gün'
complete -c orvel-cli -n '__fish_seen_subcommand_from times ics' -l days -x -d 'kaç gün'
complete -c orvel-cli -n '__fish_seen_subcommand_from times places imsakiye days qibla' -l json -d 'JSON yaz'
complete -c orvel-cli -n '__fish_seen_subcommand_from status' -l now -x -d 'bu an'
complete -c orvel-cli -n '__fish_seen_subcommand_from status' -l format -x -a 'text json waybar line genmon' -d 'biçim'
complete -c orvel-cli -n '__fish_seen_subcommand_from status' -l follow -d 'izle'
complete -c orvel-cli -n '__fish_seen_subcommand_from status' -l json -d 'JSON yaz'
complete -c orvel-cli -n '__fish_seen_subcommand_from places' -l choose -x -d 'listedeki N. yeri seç'
complete -c orvel-cli -n '__fish_seen_subcommand_from places' -l geocoder -x -d 'yer arama servisi'
complete -c orvel-cli -n '__fish_seen_subcommand_from imsakiye' -l mode -x -a 'week month ramadan hafta ay ramazan' -d 'sayfa'
complete -c orvel-cli -n '__fish_seen_subcommand_from imsakiye' -l offset -x -d 'kaç sayfa sonra'
complete -c orvel-cli -n '__fish_seen_subcommand_from imsakiye' -l date -x -d 'bugün yerine'
complete -c orvel-cli -n '__fish_seen_subcommand_from days' -l year -x -d 'yıl'
complete -c orvel-cli -n '__fish_seen_subcommand_from days' -l method -x -a 'diyanet mwl isna egypt ummAlQura' -d 'takvimin yöntemi'
complete -c orvel-cli -n '__fish_seen_subcommand_from qibla' -l date -x -d 'kıble saatinin günü'
complete -c orvel-cli -n '__fish_seen_subcommand_from ics' -l prayers -x -a 'imsak gunes ogle ikindi aksam yatsi' -d 'vakitler'
complete -c orvel-cli -n '__fish_seen_subcommand_from ics' -l output -r -d 'takvim dosyası'
