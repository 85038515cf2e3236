# bash completion for orvel-cli

_orvel_cli()
{
    local cur prev words cword
    _init_completion || return

    local commands="times status places imsakiye days qibla ics stop"
    local place="--lat --lon --tz --name --method"
    local source="--service --cache --offline"
    local command=${words[1]}

    if [[ $cword -eq 1 ]]; then
        COMPREPLY=($(compgen -W "$commands --help --version" -- "$cur"))
        return
    fi

    case $prev in
        --method)
            COMPREPLY=($(compgen -W "diyanet mwl isna egypt ummAlQura" -- "$cur"))
            return ;;
        --format)
            COMPREPLY=($(compgen -W "text json waybar line genmon" -- "$cur"))
            return ;;
        --mode)
            COMPREPLY=($(compgen -W "week month ramadan hafta ay ramazan" -- "$cur"))
            return ;;
        --tz)
            COMPREPLY=($(compgen -W "$(cd /usr/share/zoneinfo 2>/dev/null && find . -type f -name '[A-Z]*' | sed 's|^\./||')" -- "$cur"))
            return ;;
        --cache)
            _filedir -d
            return ;;
        --output)
            _filedir ics
            return ;;
        --lat|--lon|--name|--service|--date|--days|--now|--offset|--choose|--geocoder|--year|--prayers)
            return ;;
    esac

    local options
    case $command in
        times) options="--date --days --json $place $source" ;;
        status) options="--now --format --json --follow $place $source" ;;
        places) options="--choose --json --geocoder" ;;
        imsakiye) options="--mode --offset --date --json $place $source" ;;
        days) options="--year --method --json" ;;
        qibla) options="--date --json $place" ;;
        ics) options="--date --days --prayers --output $place $source" ;;
    esac
    COMPREPLY=($(compgen -W "$options --help" -- "$cur"))
}
complete -F _orvel_cli orvel-cli
